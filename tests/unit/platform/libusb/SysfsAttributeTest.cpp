#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "TemporaryDirectory.h"
#include "platform/libusb/SysfsAttribute.h"

namespace {

class SysfsAttributeTest : public testing::Test {
 protected:
  platform::Text attributeThatIs(const std::string& content) {
    std::ofstream(mDirectory.path() / "serial", std::ios::binary) << content;
    return platform::readSysfsAttribute(mDirectory.path(), "serial");
  }

  TemporaryDirectory mDirectory;
};

TEST_F(SysfsAttributeTest, IsReadWithoutItsLineEnd) {
  EXPECT_EQ(attributeThatIs("VX0042\n").utf8(), "VX0042");
  EXPECT_EQ(attributeThatIs("VX0042").utf8(), "VX0042");
  EXPECT_EQ(attributeThatIs("two\nlines\n").utf8(), "two\nlines");
}

TEST_F(SysfsAttributeTest, MayBeEmptyWithoutBeingNull) {
  EXPECT_FALSE(attributeThatIs("\n").isNull());
  EXPECT_EQ(attributeThatIs("\n").length(), 0u);
}

TEST_F(SysfsAttributeTest, MissingOneIsNull) {
  EXPECT_TRUE(platform::readSysfsAttribute(mDirectory.path(), "serial").isNull());
  EXPECT_TRUE(platform::readSysfsAttribute(mDirectory.path() / "gone", "serial").isNull());
}

// As it is for a device that goes between the opening and the reading.
TEST_F(SysfsAttributeTest, OneThatOpensButCannotBeReadIsNull) {
  std::filesystem::create_directory(mDirectory.path() / "serial");
  EXPECT_TRUE(platform::readSysfsAttribute(mDirectory.path(), "serial").isNull());
}

TEST_F(SysfsAttributeTest, BytesThatAreNotUtf8AreNull) {
  EXPECT_TRUE(attributeThatIs("VX\xFF\n").isNull());
}

}  // namespace
