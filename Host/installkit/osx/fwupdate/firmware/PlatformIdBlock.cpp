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
  const std::span<const char> front = image.first(image.size() - kTailSize);
  if (length <= front.size()) mBlock = front.last(length);
}

unsigned int PlatformIdBlock::fieldCount() const {
  return static_cast<unsigned int>(std::count(mBlock.begin(), mBlock.end(), '\0'));
}

platform::Text PlatformIdBlock::firmwareVersion() const {
  const auto zero = std::find(mBlock.begin(), mBlock.end(), '\0');
  if (zero == mBlock.end()) return platform::Text();
  const auto behindZero = static_cast<std::size_t>(zero - mBlock.begin()) + 1;
  const std::size_t available = mBlock.size() - behindZero + kTailSize;
  const char* const text = mBlock.data() + behindZero;
  return platform::Text::fromUtf8({text, std::min(kFirmwareVersionSize, available)});
}
