#include "RecordingTransport.h"

#include <stdexcept>

RecordingTransport::~RecordingTransport() { mRecord.mCalls.push_back("delete"); }

void RecordingTransport::record(const std::string& call) {
  mRecord.mCalls.push_back(call);
  const auto found = mRecord.mOnCall.find(call);
  if (found != mRecord.mOnCall.end()) found->second();
}

void RecordingTransport::takeReply(void* buffer, std::size_t length) {
  mRecord.mLastBuffer = buffer;
  mRecord.mLastReadBufferBefore.assign(static_cast<const char*>(buffer), length);
  if (mRecord.mReplies.empty()) return;
  const std::string reply = mRecord.mReplies.front();
  mRecord.mReplies.pop_front();
  if (reply.size() != length) throw std::logic_error("the scripted reply has another length");
  reply.copy(static_cast<char*>(buffer), length);
}

void RecordingTransport::connect() { record("connect"); }

void RecordingTransport::read(void* buffer, std::size_t length) {
  record("read " + std::to_string(length));
  takeReply(buffer, length);
}

void RecordingTransport::read(void* buffer, std::size_t length, unsigned int timeout) {
  record("read " + std::to_string(length) + " within " + std::to_string(timeout));
  takeReply(buffer, length);
}

void RecordingTransport::write(const void* buffer, std::size_t length) {
  record("write " + std::to_string(length));
  mRecord.mLastBuffer = buffer;
  mRecord.mWritten.emplace_back(static_cast<const char*>(buffer), length);
}
