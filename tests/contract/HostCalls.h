// Stands, for its own lifetime, between the program that this is linked into and the C library's
// open() and pread(): records each read, and lets a test change a file in the moment before it is
// opened.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <vector>

struct RecordedRead {
  const void* destination;
  std::size_t size;
  off_t offset;

  bool operator==(const RecordedRead&) const = default;
};

class HostCalls {
 public:
  explicit HostCalls(std::function<void()> beforeNextOpen = {});
  ~HostCalls();
  HostCalls(const HostCalls&) = delete;
  HostCalls& operator=(const HostCalls&) = delete;

  const std::vector<RecordedRead>& reads() const { return mReads; }

  void noteOpen();
  void noteRead(const RecordedRead& read) { mReads.push_back(read); }

 private:
  std::function<void()> mBeforeNextOpen;
  std::vector<RecordedRead> mReads;
};
