#include <gtest/gtest.h>

#include <string>

#include "PlatformIdBlock.h"

namespace {

using namespace std::string_literals;

// The view must not reach beyond the bytes: each image stands in memory of exactly its size.
struct Parsed {
  explicit Parsed(const std::string& bytes) : image(bytes.begin(), bytes.end()), block(image) {}

  std::string blockBytes() const { return {block.bytes().begin(), block.bytes().end()}; }

  std::vector<char> image;
  PlatformIdBlock block;
};

TEST(PlatformIdBlock, OfAWellFormedImage) {
  const Parsed parsed("firmware"s +
                      "ABC\0"
                      "00000123XYZ\0"
                      "Q\0"
                      "\x03\x12"s);
  EXPECT_EQ(parsed.block.version(), 3u);
  EXPECT_EQ(parsed.blockBytes(),
            "ABC\0"
            "00000123XYZ\0"
            "Q\0"s);
  EXPECT_EQ(parsed.block.fieldCount(), 3u);
  EXPECT_EQ(parsed.block.firmwareVersion().utf8(), "00000123");
}

TEST(PlatformIdBlock, OfNoBytesAndOfOneHasVersionZero) {
  for (const std::string& bytes : {""s, "\x03"s}) {
    const Parsed parsed(bytes);
    EXPECT_EQ(parsed.block.version(), 0u);
    EXPECT_EQ(parsed.blockBytes(), "");
    EXPECT_EQ(parsed.block.fieldCount(), 0u);
    EXPECT_TRUE(parsed.block.firmwareVersion().isNull());
  }
}

TEST(PlatformIdBlock, MayFillTheWholeImage) {
  const Parsed parsed(
      "A\0"
      "00000123\0"
      "Q\0"
      "\x03\x0D"s);
  EXPECT_EQ(parsed.block.fieldCount(), 3u);
  EXPECT_EQ(parsed.block.firmwareVersion().utf8(), "00000123");
}

TEST(PlatformIdBlock, ThatIsLongerThanTheImageDoesNotExist) {
  const Parsed parsed(
      "A\0"
      "00000123\0"
      "Q\0"
      "\x03\x0E"s);
  EXPECT_EQ(parsed.block.version(), 3u);
  EXPECT_EQ(parsed.blockBytes(), "");
  EXPECT_EQ(parsed.block.fieldCount(), 0u);
}

TEST(PlatformIdBlock, OfLengthZeroHasNoFields) {
  const Parsed parsed("A\0B\0C\0\x03\x00"s);
  EXPECT_EQ(parsed.block.version(), 3u);
  EXPECT_EQ(parsed.block.fieldCount(), 0u);
}

TEST(PlatformIdBlock, BytesAboveAsciiAreUnsigned) {
  const Parsed parsed(std::string(300, '\0') + "\xFF\xFF");
  EXPECT_EQ(parsed.block.version(), 255u);
  EXPECT_EQ(parsed.block.bytes().size(), 255u);
  EXPECT_EQ(parsed.block.fieldCount(), 255u);
}

TEST(PlatformIdBlock, VersionTextIsEightBytesWhateverTheFieldsLength) {
  const Parsed parsed(
      "A\0"
      "12\0"
      "Q\0"
      "\x03\x07"s);
  EXPECT_EQ(parsed.block.firmwareVersion().utf8(), "12\0Q\0\x03\x07"s);
}

TEST(PlatformIdBlock, VersionTextEndsWithTheImage) {
  const Parsed parsed(
      "AAAAAA\0\0\0"
      "\x03\x09"s);
  EXPECT_EQ(parsed.block.firmwareVersion().utf8(), "\0\0\x03\x09"s);
}

TEST(PlatformIdBlock, VersionTextBehindTheLastByteOfTheBlockIsTheTail) {
  const Parsed parsed(
      "AAAA\0"
      "\x03\x05"s);
  EXPECT_EQ(parsed.block.firmwareVersion().utf8(), "\x03\x05");
}

TEST(PlatformIdBlock, VersionTextThatIsNotUtf8IsNull) {
  const Parsed parsed(
      "A\0"
      "0000012\xE4\0"
      "Q\0"
      "\x03\x0D"s);
  EXPECT_TRUE(parsed.block.firmwareVersion().isNull());
}

}  // namespace
