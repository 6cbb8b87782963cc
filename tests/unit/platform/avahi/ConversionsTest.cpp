#include <avahi-common/address.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/avahi/Conversions.h"

namespace {

using platform::addressRecord;
using platform::txtRecord;
using Bytes = std::vector<std::uint8_t>;

AvahiAddress parsed(const char* text) {
  AvahiAddress address;
  EXPECT_NE(avahi_address_parse(text, AVAHI_PROTO_UNSPEC, &address), nullptr);
  return address;
}

class Strings {
 public:
  ~Strings() { avahi_string_list_free(list); }
  void add(const std::string& bytes) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    list = avahi_string_list_add_arbitrary(list, data, bytes.size());
  }
  AvahiStringList* list = nullptr;
};

TEST(AddressRecordTest, IPv4RecordHasPortAndAddressInNetworkOrder) {
  EXPECT_EQ(*addressRecord(parsed("192.0.2.7"), 9100, 2),
            (Bytes{16, 2, 0x23, 0x8C,  // length, family, port
                   192, 0, 2, 7,       // address
                   0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(AddressRecordTest, IPv6RecordOfGlobalAddressHasNoScope) {
  EXPECT_EQ(*addressRecord(parsed("2001:db8::42"), 9100, 2),
            (Bytes{28,   30,   0x23, 0x8C,                 // length, family, port
                   0,    0,    0,    0,                    // flow
                   0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0,     // address
                   0,    0,    0,    0,    0, 0, 0, 0x42,  //
                   0,    0,    0,    0}));                 // scope
}

TEST(AddressRecordTest, IPv6RecordOfLinkLocalAddressHasTheInterfaceAsScope) {
  EXPECT_EQ(*addressRecord(parsed("fe80::1"), 0xFFFF, 0x010203),
            (Bytes{28,   30,   0xFF, 0xFF,              // length, family, port
                   0,    0,    0,    0,                 // flow
                   0xFE, 0x80, 0,    0,    0, 0, 0, 0,  // address
                   0,    0,    0,    0,    0, 0, 0, 1,  //
                   3,    2,    1,    0}));              // scope, in the order of this machine
}

TEST(AddressRecordTest, OnlyTheLinkLocalPrefixGivesScope) {
  EXPECT_EQ(addressRecord(parsed("febf::1"), 1, 9)->at(24), 9);
  EXPECT_EQ(addressRecord(parsed("fec0::1"), 1, 9)->at(24), 0);
  EXPECT_EQ(addressRecord(parsed("fd80::1"), 1, 9)->at(24), 0);
}

TEST(AddressRecordTest, AddressOfAnotherFamilyHasNoRecord) {
  AvahiAddress address{};
  address.proto = AVAHI_PROTO_UNSPEC;
  EXPECT_EQ(addressRecord(address, 9100, 2), nullptr);
}

TEST(TxtRecordConversionTest, StringsKeepTheirOrderAndBytes) {
  Strings strings;
  strings.add("b=2");
  strings.add(std::string("a=\0\xFF", 4));
  EXPECT_EQ(*txtRecord(strings.list), (Bytes{3, 'b', '=', '2', 4, 'a', '=', 0x00, 0xFF}));
}

TEST(TxtRecordConversionTest, RecordWithoutStringsIsOneEmptyString) {
  EXPECT_EQ(*txtRecord(nullptr), Bytes{0});
}

TEST(TxtRecordConversionTest, EmptyStringsAreLeftOut) {
  Strings strings;
  strings.add("");
  strings.add("a=1");
  strings.add("");
  EXPECT_EQ(*txtRecord(strings.list), (Bytes{3, 'a', '=', '1'}));
}

TEST(TxtRecordConversionTest, TooLongStringIsCut) {
  Strings strings;
  strings.add(std::string(300, 'x'));
  Bytes expected{255};
  expected.resize(256, 'x');
  EXPECT_EQ(*txtRecord(strings.list), expected);
}

}  // namespace
