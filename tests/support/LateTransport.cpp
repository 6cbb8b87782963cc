#include "LateTransport.h"

#include <algorithm>
#include <stdexcept>

namespace {

// Deeper than any call from a test into a task.
[[gnu::noinline]] void overwriteUnusedStack() {
  volatile char unused[65536];
  for (volatile char& byte : unused) byte = '?';
}

}  // namespace

void LateRecord::complete() {
  overwriteUnusedStack();
  if (mSource != nullptr) mSent.emplace_back(mSource, mLength);
  if (mDestination != nullptr) {
    const std::string reply = mReplies.at(0);
    mReplies.pop_front();
    if (reply.size() != mLength) throw std::logic_error("the scripted reply has another length");
    std::ranges::copy(reply, mDestination);
  }
  mSource = nullptr;
  mDestination = nullptr;
}

void LateTransport::read(void* buffer, std::size_t length) {
  mRecord.mDestination = static_cast<char*>(buffer);
  mRecord.mLength = length;
}

void LateTransport::read(void* buffer, std::size_t length, unsigned int) { read(buffer, length); }

void LateTransport::write(const void* buffer, std::size_t length) { write(buffer, length, {}); }

void LateTransport::write(const void* buffer, std::size_t length, const Progress&) {
  mRecord.mSource = static_cast<const char*>(buffer);
  mRecord.mLength = length;
}
