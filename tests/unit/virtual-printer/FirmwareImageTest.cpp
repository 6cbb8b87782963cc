#include <gmock/gmock.h>

#include <string>

#include "FirmwareImage.h"
#include "HostBytes.h"

namespace {

using namespace virtualprinter;
using testing::ElementsAre;
using testing::IsEmpty;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

TEST(ImageChecksumTest, ComplementsTheSumOfBigEndianWords) {
  EXPECT_EQ(imageChecksum(Bytes{0x12, 0x34, 0x56, 0x78}), 0x9753);
}

TEST(ImageChecksumTest, AddsAnOddLastByteAsItIs) {
  EXPECT_EQ(imageChecksum(Bytes{0x01, 0x02, 0x03}), 0xfefa);
  EXPECT_EQ(imageChecksum(Bytes{0xab}), 0xff54);
}

TEST(ImageChecksumTest, FoldsCarries) {
  EXPECT_EQ(imageChecksum(Bytes(4, 0xff)), 0x0000);
  Bytes ramp;
  for (int i = 0; i < 256 * 1024; ++i) ramp.push_back(static_cast<std::uint8_t>(i));
  EXPECT_EQ(imageChecksum(ramp), 0x0100);
}

TEST(ImageChecksumTest, FoldsLargeSumsWithTheirSign) {
  EXPECT_EQ(imageChecksum(Bytes(65538, 0xff)), 0x0001);
}

TEST(ImageChecksumTest, OfNothingIsAllOnes) { EXPECT_EQ(imageChecksum({}), 0xffff); }

TEST(Sha256Test, GivesTheStandardDigests) {
  EXPECT_EQ(sha256({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(sha256(bytesOf("abc")),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(PlatformIdTest, ReadsFieldsAndVersion) {
  const PlatformId id = readPlatformId(kImage);
  EXPECT_EQ(id.problem, "");
  EXPECT_THAT(id.fields, ElementsAre("KX", "00000200", "Q"));
  EXPECT_EQ(id.version, "00000200");
}

TEST(PlatformIdTest, VersionIsTheFirstEightBytesOfTheSecondField) {
  Bytes image =
      bytesOf(std::string("ABC\0"
                          "00000123XYZ\0"
                          "Q\0",
                          18));
  EXPECT_EQ(readPlatformId(image + Bytes{3, 18}).version, "00000123");
  image =
      bytesOf(std::string("A\0"
                          "12a\0"
                          "Q\0",
                          8));
  EXPECT_EQ(readPlatformId(image + Bytes{3, 8}).version, "12");
}

TEST(PlatformIdTest, BlockMayBeTheWholeImage) {
  EXPECT_EQ(readPlatformId(bytesOf(std::string("\0"
                                               "7\0"
                                               "\0",
                                               4)) +
                           Bytes{3, 4})
                .version,
            "7");
}

TEST(PlatformIdTest, OtherVersionsOfTheBlockAreAProblem) {
  EXPECT_EQ(readPlatformId(with(kImage, 24, 2)).problem,
            "the platform ID version is 2, expected 3");
}

TEST(PlatformIdTest, NumberOfFieldsMustBeThree) {
  EXPECT_EQ(readPlatformId(with(kImage, 12, 0x20)).problem,
            "the platform ID block has 2 fields, expected 3");
  EXPECT_EQ(readPlatformId(with(kImage, 10, 0)).problem,
            "the platform ID block has 4 fields, expected 3");
  EXPECT_EQ(readPlatformId(with(kImage, 25, 0)).problem,
            "the platform ID block has 0 fields, expected 3");
}

TEST(PlatformIdTest, BlockMustLieInTheImage) {
  EXPECT_EQ(readPlatformId(with(kImage, 25, 25)).problem,
            "the platform ID block has 25 bytes, but only 24 precede its version");
}

TEST(PlatformIdTest, SecondFieldMustBeginWithAVersion) {
  EXPECT_EQ(readPlatformId(with(kImage, 13, 0x78)).problem,
            "the second platform ID field does not begin with a version");
}

TEST(PlatformIdTest, ImageMustHaveRoomForTheBlock) {
  EXPECT_EQ(readPlatformId({}).problem, "the image is too short for a platform ID block");
  EXPECT_EQ(readPlatformId(Bytes{3}).problem, "the image is too short for a platform ID block");
  EXPECT_THAT(readPlatformId(Bytes{3}).fields, IsEmpty());
}

}  // namespace
