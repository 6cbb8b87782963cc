#include <gtest/gtest.h>

#include "platform/libusb/PropertyMatching.h"

namespace {

using platform::findProperty;
using platform::MatchingDictionary;
using platform::PropertyDictionary;
using platform::PropertyNumber;
using platform::PropertyValue;
using platform::Text;

Text text(const char* utf8) { return Text::fromUtf8(utf8); }

// Whether a device with the number `own` as its product is found by one who wants `wanted`.
bool finds(const PropertyValue& wanted, const PropertyValue& own) {
  const MatchingDictionary matching{text("IOUSBDevice"), {{{text("idProduct"), wanted}}}};
  return platform::isMatching(matching, {{{text("idProduct"), own}}});
}

TEST(PropertyMatchingTest, AllWantedPropertiesMustBeThere) {
  const PropertyDictionary own{{{text("idVendor"), PropertyNumber{0x3A71, 2}},
                                {text("idProduct"), PropertyNumber{0x0C28, 2}}}};
  MatchingDictionary matching{text("IOUSBDevice"), {}};
  EXPECT_TRUE(platform::isMatching(matching, own));
  matching.properties.entries.emplace_back(text("idVendor"), PropertyNumber{0x3A71, 2});
  matching.properties.entries.emplace_back(text("idProduct"), PropertyNumber{0x0C28, 4});
  EXPECT_TRUE(platform::isMatching(matching, own));
  matching.properties.entries.emplace_back(text("bDeviceClass"), PropertyNumber{0, 2});
  EXPECT_FALSE(platform::isMatching(matching, own));
}

TEST(PropertyMatchingTest, OnlyDevicesAreMatched) {
  EXPECT_FALSE(platform::isMatching({text("IOUSBInterface"), {}}, {}));
}

TEST(PropertyMatchingTest, KeyThatIsNoTextMatchesNothing) {
  const PropertyDictionary odd{{{PropertyNumber{1}, PropertyNumber{1}}}};
  EXPECT_FALSE(platform::isMatching({text("IOUSBDevice"), odd}, odd));
}

TEST(PropertyMatchingTest, NumberOf16BitsMatchesByItsBits) {
  EXPECT_TRUE(finds(PropertyNumber{0x0C28, 2}, PropertyNumber{0x0C28, 2}));
  EXPECT_TRUE(finds(PropertyNumber{-2, 2}, PropertyNumber{-2, 2}));
  EXPECT_TRUE(finds(PropertyNumber{0xFFFE, 2}, PropertyNumber{-2, 2}));
  EXPECT_FALSE(finds(PropertyNumber{0x0C29, 2}, PropertyNumber{0x0C28, 2}));
}

TEST(PropertyMatchingTest, NumberOf32BitsMatchesByItsValue) {
  EXPECT_TRUE(finds(PropertyNumber{0xFFFE, 4}, PropertyNumber{-2, 2}));
  EXPECT_FALSE(finds(PropertyNumber{-2, 4}, PropertyNumber{-2, 2}));
  EXPECT_FALSE(finds(PropertyNumber{0x10C28, 4}, PropertyNumber{0x0C28, 2}));
}

TEST(PropertyMatchingTest, TextMatchesByItsBytes) {
  EXPECT_TRUE(finds(text("A"), text("A")));
  EXPECT_FALSE(finds(text("A"), text("a")));
  EXPECT_FALSE(finds(Text(), Text()));
  EXPECT_FALSE(finds(text("1"), PropertyNumber{1}));
}

TEST(PropertyMatchingTest, PropertyIsFoundByItsWholeKey) {
  const PropertyDictionary own{{{PropertyNumber{1}, text("odd")}, {text("ab"), text("value")}}};
  EXPECT_TRUE(findProperty(own, "ab"));
  EXPECT_FALSE(findProperty(own, "a"));
  EXPECT_FALSE(findProperty(own, "abc"));
  EXPECT_FALSE(findProperty({}, "ab"));
}

}  // namespace
