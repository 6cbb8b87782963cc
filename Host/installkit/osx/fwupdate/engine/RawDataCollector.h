// The receive buffer of the network transport: bytes arrive in pieces of any size and are taken in
// the numbers that a reader asks for, in the order of their arrival. Without a limit.
#pragma once

#include <cstddef>
#include <deque>

class RawDataCollector {
 public:
  RawDataCollector() = default;
  virtual ~RawDataCollector() = default;
  RawDataCollector(const RawDataCollector&) = default;
  RawDataCollector& operator=(const RawDataCollector&) = default;

  std::size_t size() const { return mData.size(); }

  // Throws std::bad_alloc, and changes nothing, when memory is exhausted.
  void pushBackData(const unsigned char* data, std::size_t length);

  // Moves the oldest bytes to [begin, end). Throws std::runtime_error, and changes nothing, when
  // there are fewer.
  void popData(unsigned char* begin, unsigned char* end);

 private:
  std::deque<unsigned char> mData;
};
