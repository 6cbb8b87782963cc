#include "RecordingTransport.h"

#include <stdexcept>

void TransportRecord::add(const std::string& call) {
  mCalls.push_back(call);
  const auto found = mOnCall.find(call);
  if (found != mOnCall.end()) found->second();
}

RecordingTransport::~RecordingTransport() { mRecord.add("delete"); }

void RecordingTransport::takeReply(void* buffer, std::size_t length) {
  mRecord.mLastBuffer = buffer;
  mRecord.mLastReadBufferBefore.assign(static_cast<const char*>(buffer), length);
  if (mRecord.mReplies.empty()) return;
  const std::string reply = mRecord.mReplies.front();
  mRecord.mReplies.pop_front();
  if (reply.size() != length) throw std::logic_error("the scripted reply has another length");
  reply.copy(static_cast<char*>(buffer), length);
}

void RecordingTransport::connect() { mRecord.add("connect"); }

void RecordingTransport::read(void* buffer, std::size_t length) {
  mRecord.add("read " + std::to_string(length));
  takeReply(buffer, length);
}

void RecordingTransport::read(void* buffer, std::size_t length, unsigned int timeout) {
  mRecord.add("read " + std::to_string(length) + " within " + std::to_string(timeout));
  takeReply(buffer, length);
}

void RecordingTransport::write(const void* buffer, std::size_t length) {
  write(buffer, length, {});
}

void RecordingTransport::write(const void* buffer, std::size_t length, const Progress& progress) {
  mRecord.mProgress = progress;
  mRecord.add("write " + std::to_string(length));
  mRecord.mLastBuffer = buffer;
  mRecord.mWritten.emplace_back(static_cast<const char*>(buffer), length);
}
