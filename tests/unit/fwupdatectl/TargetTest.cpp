#include <gtest/gtest.h>

#include <stdexcept>

#include "JsonLines.h"
#include "Target.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Target, AddressGetsThePortOfPrinters) {
  EXPECT_EQ(completeAddress("10.0.0.5"), "10.0.0.5:9100");
  EXPECT_EQ(completeAddress("10.0.0.5:631"), "10.0.0.5:631");
  EXPECT_EQ(completeAddress("office"), "office:9100");
  EXPECT_EQ(completeAddress("office-2.example:631"), "office-2.example:631");
}

TEST(Target, WhatIsNoAddressIsRefused) {
  for (const char* text :
       {"", "of fice", "-office", ".", "..", "10.0.0", "10.0.0.256", "2130706433", "0x7f000001",
        "office.0X7F", "127.1.", "::1", "[::1]:9100", "10.0.0.5:", "10.0.0.5:0", "10.0.0.5:65536",
        "10.0.0.5:9100x", ":9100", "office:"}) {
    EXPECT_THROW(completeAddress(text), std::invalid_argument) << text;
  }
}

TEST(Target, AddressOfAnotherKindIsNamed) {
  try {
    completeAddress("fe80::1");
    ADD_FAILURE();
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "\"fe80::1\" is an IPv6 address: printers are reached by IPv4");
  }
}

TEST(Target, NameOfAHostIsNoLongerThanNamesAre) {
  EXPECT_EQ(completeAddress(std::string(253, 'a')), std::string(253, 'a') + ":9100");
  EXPECT_THROW(completeAddress(std::string(254, 'a')), std::invalid_argument);
}

TEST(Target, AddressIsARecord) {
  EXPECT_EQ(*addressRecord("10.0.0.5:9100"),
            (Bytes{16, 2, 0x23, 0x8C, 10, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(
      addressText(platform::makeData({16, 2, 0x02, 0x77, 192, 168, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0})),
      "192.168.1.2:631");
}

TEST(Target, AnnouncementThatLeadsNowhereIsSaidToDoSo) {
  const auto complaint = [](const std::string& address) -> std::string {
    try {
      addressRecord(address);
      return {};
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  };
  EXPECT_EQ(complaint(""), "The printer has IPv6 addresses only: printers are reached by IPv4.");
  EXPECT_EQ(complaint("10.0.0.5:0"), "The printer announces no port that can be connected to.");
  EXPECT_EQ(complaint("office:9100"), "\"office:9100\" is no IPv4 address with a port.");
}

TEST(Target, RecordOfAnotherKindHasNoAddress) {
  EXPECT_EQ(addressText(nullptr), "");
  EXPECT_EQ(addressText(platform::makeData({16, 2, 0x23, 0x8C, 10, 0, 0})), "");
  Bytes ipv6(28);
  ipv6[0] = 28;
  ipv6[1] = 30;
  EXPECT_EQ(addressText(platform::makeData(ipv6)), "");
}

TEST(Target, GoesToAnotherProcessAndBack) {
  const Target usb =
      targetFromJson(toJson({Target::Connection::Usb, "Veltra KX350T", "VP000001", {}}));
  EXPECT_EQ(usb.connection, Target::Connection::Usb);
  EXPECT_EQ(usb.name, "Veltra KX350T");
  EXPECT_EQ(usb.serial, "VP000001");
  const Target network =
      targetFromJson(toJson({Target::Connection::Network, "Office", {}, "10.0.0.5:9100"}));
  EXPECT_EQ(network.connection, Target::Connection::Network);
  EXPECT_EQ(network.address, "10.0.0.5:9100");
}

}  // namespace
