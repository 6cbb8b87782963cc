// A transport that does nothing but record. The record outlives it, since a download deletes its
// transport: "connect", "read 16", "read 16 within 3000", "write 50", "delete".
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "IoTransport.h"

struct TransportRecord {
  // Adds a line to the calls, and calls what is filed under it.
  void add(const std::string& call);

  std::vector<std::string> mCalls;
  std::vector<std::string> mWritten;  // the bytes of each write

  // Every read takes the next of these at once; without one it leaves the buffer alone.
  std::deque<std::string> mReplies;

  // Called by the operation whose line it is filed under; may throw, but for "delete".
  std::map<std::string, std::function<void()>> mOnCall;

  // What the last write tells its progress to; empty when it tells nobody.
  IoTransport::Progress mProgress;

  const void* mLastBuffer = nullptr;
  std::string mLastReadBufferBefore;  // what the buffer of the last read held
};

class RecordingTransport : public IoTransport {
 public:
  explicit RecordingTransport(TransportRecord& record) : mRecord(record) {}
  ~RecordingTransport() override;

  void connect() override;
  void read(void* buffer, std::size_t length) override;
  void read(void* buffer, std::size_t length, unsigned int timeout) override;
  void write(const void* buffer, std::size_t length) override;
  void write(const void* buffer, std::size_t length, const Progress& progress) override;

 private:
  void takeReply(void* buffer, std::size_t length);

  TransportRecord& mRecord;
};
