#include "CalcCheckSum.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// Big-endian words, as they lie in the image.
std::uint16_t wordAt(const unsigned char* bytes) {
  std::uint16_t word;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (std::endian::native == std::endian::little) word = std::rotl(word, 8);
  return word;
}

}  // namespace

unsigned short CalcCheckSum(const unsigned short* data, unsigned long length) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(data);
  const std::size_t pairs = length / 2;

  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < pairs; ++i) sum += wordAt(bytes + 2 * i);
  if (length % 2 != 0) sum += bytes[length - 1];

  auto accumulator = static_cast<std::int32_t>(sum);
  while (accumulator >> 16 != 0) accumulator = (accumulator & 0xFFFF) + (accumulator >> 16);
  return static_cast<unsigned short>(~accumulator);
}
