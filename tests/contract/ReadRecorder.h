// Records, for its own lifetime, each read of a file by pread(2): the program that this is linked
// into has its own pread() in front of the C library's.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <vector>

struct RecordedRead {
  const void* destination;
  std::size_t size;
  off_t offset;

  bool operator==(const RecordedRead&) const = default;
};

class ReadRecorder {
 public:
  ReadRecorder();
  ~ReadRecorder();
  ReadRecorder(const ReadRecorder&) = delete;
  ReadRecorder& operator=(const ReadRecorder&) = delete;

  const std::vector<RecordedRead>& reads() const { return mReads; }

  void add(const RecordedRead& read) { mReads.push_back(read); }

 private:
  std::vector<RecordedRead> mReads;
};
