#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/TxtRecord.h"

namespace {

using platform::TxtRecord;

TxtRecord record(const std::vector<std::uint8_t>& bytes) { return TxtRecord(bytes); }

TEST(TxtRecordTest, RecordWithoutBytesHasNoKeys) {
  EXPECT_EQ(record({}).value("usb_MFG"), std::nullopt);
  EXPECT_EQ(record({}).value(""), std::nullopt);
}

TEST(TxtRecordTest, EmptyStringHasNoKey) {
  EXPECT_EQ(record({0}).value(""), std::nullopt);
  EXPECT_EQ(record({0, 0, 3, 'a', '=', '1'}).value("a"), "1");
}

TEST(TxtRecordTest, ValuesAreFoundByKey) {
  const TxtRecord txt = record({9,   't', 'x', 't', 'v', 'e', 'r', 's', '=', '1',  //
                                14,  'u', 's', 'b', '_', 'M', 'F', 'G', '=',       //
                                'V', 'e', 'l', 't', 'r', 'a'});
  EXPECT_EQ(txt.value("txtvers"), "1");
  EXPECT_EQ(txt.value("usb_MFG"), "Veltra");
  EXPECT_EQ(txt.value("usb_MDL"), std::nullopt);
}

TEST(TxtRecordTest, KeysDifferInLetterCase) {
  const TxtRecord txt = record({3, 'a', '=', '1', 3, 'A', '=', '2'});
  EXPECT_EQ(txt.value("a"), "1");
  EXPECT_EQ(txt.value("A"), "2");
}

TEST(TxtRecordTest, KeyIsNotFoundByItsBeginning) {
  const TxtRecord txt = record({8, 'u', 's', 'b', '_', 'M', 'F', 'G', 'X'});
  EXPECT_EQ(txt.value("usb_MFG"), std::nullopt);
  EXPECT_EQ(txt.value("usb_MFGX"), "");
}

TEST(TxtRecordTest, FirstOfSeveralValuesCounts) {
  EXPECT_EQ(record({3, 'a', '=', '1', 3, 'a', '=', '2'}).value("a"), "1");
  EXPECT_EQ(record({1, 'a', 3, 'a', '=', '2'}).value("a"), "");
}

TEST(TxtRecordTest, KeyMayBeWithoutValue) {
  EXPECT_EQ(record({1, 'a'}).value("a"), "");
  EXPECT_EQ(record({2, 'a', '='}).value("a"), "");
}

TEST(TxtRecordTest, StringWithoutKeyIsSkipped) {
  const TxtRecord txt = record({3, '=', 'a', 'b', 1, '=', 3, 'a', '=', '1'});
  EXPECT_EQ(txt.value(""), std::nullopt);
  EXPECT_EQ(txt.value("a"), "1");
}

TEST(TxtRecordTest, ValueMayHoldEqualsSigns) {
  EXPECT_EQ(record({5, 'a', '=', 'b', '=', 'c'}).value("a"), "b=c");
}

TEST(TxtRecordTest, ValueMayHoldAnyBytes) {
  EXPECT_EQ(record({6, 'a', '=', 0x00, 0xFF, 0x80, 0x0A}).value("a"),
            std::string_view("\x00\xFF\x80\x0A", 4));
}

TEST(TxtRecordTest, LongestStringIsReadWhole) {
  std::vector<std::uint8_t> bytes{255, 'a', '='};
  bytes.resize(256, 'x');
  bytes.insert(bytes.end(), {3, 'b', '=', '1'});
  EXPECT_EQ(record(bytes).value("a"), std::string(253, 'x'));
  EXPECT_EQ(record(bytes).value("b"), "1");
}

TEST(TxtRecordTest, LengthBeyondTheEndEndsTheRecord) {
  const TxtRecord txt = record({3, 'a', '=', '1', 4, 'b', '=', '2'});
  EXPECT_EQ(txt.value("a"), "1");
  EXPECT_EQ(txt.value("b"), std::nullopt);
  EXPECT_EQ(record({1}).value(""), std::nullopt);
  EXPECT_EQ(record({255}).value(""), std::nullopt);
}

}  // namespace
