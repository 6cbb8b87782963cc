// The checksum of an image is that of the printer, however long it is and wherever it lies: the sum
// of its big-endian words, one after the other. The input is the length, the place, and bytes that
// are repeated.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "CalcCheckSum.h"
#include "Script.h"

namespace {

// Two of the blocks in which an image is added up, and some.
constexpr std::size_t kLongest = 40000;

// Less than 2^31 is added up: longer images are another matter.
std::uint16_t checkSumOf(const unsigned char* bytes, std::size_t length) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const bool isHigh = i % 2 == 0 && i + 1 < length;
    sum += isHigh ? bytes[i] * 256u : bytes[i];
  }
  while (sum > 0xFFFF) sum = sum % 0x10000 + sum / 0x10000;
  return static_cast<std::uint16_t>(0xFFFF - sum);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  const std::size_t low = script.take();
  const std::size_t middle = script.take();
  const std::size_t length = (low + middle * 256 + script.take() * std::size_t{65536}) % kLongest;
  const std::size_t place = script.take() % 16;
  const std::string pattern = size > 4 ? script.take(size - 4) : std::string(1, '\xFF');

  static std::array<unsigned char, kLongest + 16> memory;
  unsigned char* const image = memory.data() + place;
  for (std::size_t i = 0; i < length; ++i) {
    image[i] = static_cast<unsigned char>(pattern[i % pattern.size()]);
  }
  const void* const start = image;
  const auto sum = CalcCheckSum(static_cast<const unsigned short*>(start), length);
  if (sum != checkSumOf(image, length)) std::abort();
  return 0;
}
