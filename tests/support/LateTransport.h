// A transport that takes its time, as a printer does: an operation moves its bytes when the test
// completes it, from or to the memory that it was given when it began. Nothing of the stack that
// the operation was started from is left by then. The record outlives the transport.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "IoTransport.h"

struct LateRecord {
  // Moves the bytes of the operation that is under way, if any.
  void complete();

  std::vector<std::string> mSent;    // the bytes of each write, as they were at its completion
  std::deque<std::string> mReplies;  // the bytes of each read

  const char* mSource = nullptr;
  char* mDestination = nullptr;
  std::size_t mLength = 0;
};

class LateTransport : public IoTransport {
 public:
  explicit LateTransport(LateRecord& record) : mRecord(record) {}

  void connect() override {}
  void read(void* buffer, std::size_t length) override;
  void read(void* buffer, std::size_t length, unsigned int timeout) override;
  void write(const void* buffer, std::size_t length) override;
  void write(const void* buffer, std::size_t length, const Progress& progress) override;

 private:
  LateRecord& mRecord;
};
