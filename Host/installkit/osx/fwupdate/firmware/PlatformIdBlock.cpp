#include "PlatformIdBlock.h"

#include <algorithm>

namespace {

constexpr std::size_t kTailSize = 2;  // the format version and the block's length
constexpr std::size_t kFirmwareVersionSize = 8;

}  // namespace

PlatformIdBlock::PlatformIdBlock(std::span<const char> image) {
  if (image.size() < kTailSize) return;
  const std::span<const char> tail = image.last(kTailSize);
  mVersion = static_cast<unsigned char>(tail[0]);
  const std::size_t length = static_cast<unsigned char>(tail[1]);
  if (length + kTailSize <= image.size()) mEnd = image.last(length + kTailSize);
}

std::span<const char> PlatformIdBlock::bytes() const {
  return mEnd.empty() ? mEnd : mEnd.first(mEnd.size() - kTailSize);
}

unsigned int PlatformIdBlock::fieldCount() const {
  return static_cast<unsigned int>(std::ranges::count(bytes(), '\0'));
}

platform::Text PlatformIdBlock::firmwareVersion() const {
  const std::span<const char> block = bytes();
  const auto zero = std::ranges::find(block, '\0');
  if (zero == block.end()) return platform::Text();
  const auto behindZero = static_cast<std::size_t>(zero - block.begin()) + 1;
  const std::span<const char> rest = mEnd.subspan(behindZero);
  return platform::Text::fromUtf8({rest.data(), std::min(kFirmwareVersionSize, rest.size())});
}
