// Makes reads of less than a packet possible. A USB read must ask for whole packets, or it loses
// what the packet has beyond it: so one whole packet is read into this buffer, which then hands it
// out piece by piece. Owned by the UsbInterface that it serves.
#pragma once

#include <cstddef>
#include <vector>

class ShortReadBuffer {
 public:
  // `size` is the length of the pipe's packets.
  explicit ShortReadBuffer(std::size_t size);
  ShortReadBuffer(const ShortReadBuffer&) = delete;
  ShortReadBuffer& operator=(const ShortReadBuffer&) = delete;

  // Where a packet is read to, and how long it may be. The place never moves.
  char* data() { return mData.data(); }
  std::size_t capacity() const { return mData.size(); }

  // Bytes that are in the buffer and not yet handed out.
  std::size_t available() const { return mAvailable; }

  // A packet of `numBytes` bytes has just been read into data(). Replaces what was available.
  void handleReadCompletion(std::size_t numBytes);

  // Copies up to `len` available bytes to `dst` and returns how many. There must be at least one to
  // copy.
  std::size_t read(char* dst, std::size_t len);

 private:
  std::vector<char> mData;
  std::size_t mAvailable = 0;
  const char* mReadPos;
};
