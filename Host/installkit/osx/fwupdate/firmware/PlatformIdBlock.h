// The end of a firmware file, where its version is recorded: a block of texts that each end in a
// zero byte, the block's format version, and the block's length. A view of an image that must
// outlive it; any bytes may be passed. The loader judges the block, tools show it.
#pragma once

#include <cstddef>
#include <span>

#include "platform/Text.h"

class PlatformIdBlock {
 public:
  static constexpr unsigned int kExpectedVersion = 3;
  static constexpr unsigned int kExpectedFields = 3;

  explicit PlatformIdBlock(std::span<const char> image);

  // The format version; 0 when the image is too short to hold one.
  unsigned int version() const { return mVersion; }

  // The texts with their zero bytes; empty when the image is shorter than the block says it is.
  std::span<const char> bytes() const;

  // The number of zero bytes in the block.
  unsigned int fieldCount() const;

  // The 8 bytes behind the first zero byte, whatever they are: beyond the block they are those of
  // the format version and the length, and where the image ends there are fewer. Null when they are
  // not valid UTF-8, or there is no zero byte.
  platform::Text firmwareVersion() const;

 private:
  std::span<const char> mEnd;  // the block and what follows it, to the end of the image
  unsigned int mVersion = 0;
};
