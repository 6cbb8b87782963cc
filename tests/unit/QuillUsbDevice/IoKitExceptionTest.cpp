#include <gtest/gtest.h>

#include <type_traits>

#include "IoKitException.h"

namespace {

static_assert(std::is_base_of_v<std::runtime_error, IoKitException>);

TEST(IoKitExceptionTest, TextEndsWithTheCodeInLowerCaseHexadecimal) {
  EXPECT_STREQ(IoKitException("Failed to open device.", 0xE00002C5).what(),
               "Failed to open device. [return value = 0xe00002c5]");
}

TEST(IoKitExceptionTest, CodeHasNoLeadingZeros) {
  EXPECT_STREQ(IoKitException("Odd.", 0x0A).what(), "Odd. [return value = 0xa]");
  EXPECT_STREQ(IoKitException("", 0).what(), " [return value = 0x0]");
}

}  // namespace
