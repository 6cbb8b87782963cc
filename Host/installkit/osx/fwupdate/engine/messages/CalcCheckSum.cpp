#include "CalcCheckSum.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// An image is added up as fast as its memory is read: in lanes that the compiler turns into
// vectors, and whose 16 bits hold the bytes of 256 rows. `high` and `low` are as this machine reads
// words.
constexpr std::size_t kLanes = 32;
constexpr std::size_t kRows = 256;
constexpr std::size_t kBlockBytes = 2 * kLanes * kRows;

std::uint16_t wordAt(const unsigned char* bytes) {
  std::uint16_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// The big-endian words of one block, added up.
std::uint32_t sumBlock(const unsigned char* bytes) {
  std::uint16_t high[kLanes] = {};
  std::uint16_t low[kLanes] = {};
  for (std::size_t row = 0; row < kRows; ++row) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const std::uint16_t word = wordAt(bytes + 2 * (row * kLanes + lane));
      high[lane] = static_cast<std::uint16_t>(high[lane] + (word >> 8));
      low[lane] = static_cast<std::uint16_t>(low[lane] + (word & 0xFF));
    }
  }
  constexpr bool isLittleEndian = std::endian::native == std::endian::little;
  const std::uint16_t* const first = isLittleEndian ? low : high;
  const std::uint16_t* const second = isLittleEndian ? high : low;
  std::uint32_t sum = 0;
  for (std::size_t lane = 0; lane < kLanes; ++lane) sum += first[lane] * 256u + second[lane];
  return sum;
}

}  // namespace

unsigned short CalcCheckSum(const unsigned short* data, unsigned long length) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(data);

  std::uint32_t sum = 0;
  for (; length >= kBlockBytes; length -= kBlockBytes, bytes += kBlockBytes) sum += sumBlock(bytes);
  for (; length >= 2; length -= 2, bytes += 2) sum += bytes[0] * 256u + bytes[1];
  if (length != 0) sum += *bytes;

  auto accumulator = static_cast<std::int32_t>(sum);
  while (accumulator >> 16 != 0) accumulator = (accumulator & 0xFFFF) + (accumulator >> 16);
  return static_cast<unsigned short>(~accumulator);
}
