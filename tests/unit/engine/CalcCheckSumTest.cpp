#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

#include "CalcCheckSum.h"

namespace {

// The bytes lie at an odd address, as nothing promises an even one.
unsigned short checkSum(const std::vector<unsigned char>& bytes) {
  alignas(2) static unsigned char memory[262146];
  unsigned char* const odd = memory + 1;
  std::copy(bytes.begin(), bytes.end(), odd);
  const void* const start = odd;
  return CalcCheckSum(static_cast<const unsigned short*>(start), bytes.size());
}

unsigned short checkSumOfFF(std::size_t count) {
  return checkSum(std::vector<unsigned char>(count, 0xFF));
}

TEST(CalcCheckSum, AddsBigEndianWords) { EXPECT_EQ(checkSum({0x12, 0x34, 0x56, 0x78}), 0x9753); }

TEST(CalcCheckSum, AddsALastOddByteAsItIs) {
  EXPECT_EQ(checkSum({0x01, 0x02, 0x03}), 0xFEFA);
  EXPECT_EQ(checkSum({0xAB}), 0xFF54);
}

TEST(CalcCheckSum, OfNothingIsAllOnes) { EXPECT_EQ(CalcCheckSum(nullptr, 0), 0xFFFF); }

TEST(CalcCheckSum, OfFourFFIsZero) { EXPECT_EQ(checkSumOfFF(4), 0x0000); }

TEST(CalcCheckSum, OfEveryByteRepeated) {
  std::vector<unsigned char> bytes(std::size_t{256} * 1024);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i);
  EXPECT_EQ(checkSum(bytes), 0x0100);
}

TEST(CalcCheckSum, FoldsASumFrom2To31OnAsASignedNumber) {
  EXPECT_EQ(checkSumOfFF(65536), 0x0000);  // 32768 words: just below
  EXPECT_EQ(checkSumOfFF(65537), 0xFF00);
  EXPECT_EQ(checkSumOfFF(65538), 0x0001);  // an unsigned fold gives 0x0000
}

TEST(CalcCheckSum, FoldsTheMostNegativeSum) {
  std::vector<unsigned char> words(131072, 0x00);
  for (std::size_t i = 0; i < words.size(); i += 2) words[i] = 0x80;
  EXPECT_EQ(checkSum(words), 0x8000);
  words.resize(131070);
  EXPECT_EQ(checkSum(words), 0x0000);
}

TEST(CalcCheckSum, WrapsItsSumAt2To32) {
  EXPECT_EQ(checkSumOfFF(131076), 0x0001);  // a wider sum gives 0x0000
  EXPECT_EQ(checkSumOfFF(200000), 0x0002);
  EXPECT_EQ(checkSumOfFF(200001), 0xFF02);
}

TEST(CalcCheckSum, OfEveryShortLength) {
  const std::initializer_list<unsigned short> expected = {
      0xFFFF, 0xFFFC, 0xFCF5, 0xFCE4, 0xEBDD, 0xEBBE, 0xCCB7, 0xCC8A, 0x9F83, 0x9F48,
      0x6441, 0x63F8, 0x1AF1, 0x1A9A, 0xC392, 0xC32D, 0x5E26, 0x5DB3, 0xEAAB, 0xEA2A};
  std::vector<unsigned char> bytes;
  for (const unsigned short sum : expected) {
    EXPECT_EQ(checkSum(bytes), sum) << bytes.size() << " bytes";
    bytes.push_back(static_cast<unsigned char>(7 * bytes.size() + 3));
  }
}

TEST(CalcCheckSum, OfLengthsAroundItsBlocks) {
  const std::pair<std::size_t, unsigned short> expected[] = {
      {16382, 0xE737}, {16383, 0xE6F2}, {16384, 0xA1F5}, {16385, 0xA1B4},
      {16386, 0x60B3}, {32768, 0x7E38}, {49155, 0xD030}, {200001, 0x8303}};
  for (const auto& [length, sum] : expected) {
    std::vector<unsigned char> bytes(length);
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<unsigned char>(i * i + i / 251);
    EXPECT_EQ(checkSum(bytes), sum) << length << " bytes";
  }
}

TEST(CalcCheckSum, OfALargeImage) {
  std::vector<unsigned char> bytes(32 << 20, 0xFF);
  const void* const start = bytes.data();
  EXPECT_EQ(CalcCheckSum(static_cast<const unsigned short*>(start), bytes.size()), 0x0100);
}

}  // namespace
