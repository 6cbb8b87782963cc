#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <vector>

#include "AclResponse.h"
#include "Log.h"
#include "LogRecorder.h"
#include "Pjl.h"
#include "PjlAclRequestHeader.h"
#include "PjlSimpleAclRequest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using Bytes = std::vector<std::uint8_t>;

template <typename Message>
Bytes bytesOf(const Message& message) {
  Bytes bytes(sizeof message);
  std::memcpy(bytes.data(), &message, sizeof message);
  return bytes;
}

// clang-format off
const Bytes kFreshHeader = {
    0x1B, '%', '-', '1', '2', '3', '4', '5', 'X',              // UEL
    '@', 'P', 'J', 'L', ' ', 'E', 'N', 'T', 'E', 'R', ' ', 'L', 'A', 'N', 'G', 'U', 'A', 'G', 'E',
    '=', 'A', 'C', 'L', 0x0D, 0x0A,                            // enter ACL
    0x00, 0xAC,                                                // prefix
    0x00, 0x00,                                                // command
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,                        // parameters
};

const Bytes kUstatusOffBytes = {
    0x1B, '%', '-', '1', '2', '3', '4', '5', 'X',
    '@', 'P', 'J', 'L', ' ', 'U', 'S', 'T', 'A', 'T', 'U', 'S', 'O', 'F', 'F', 0x0A,
    0x1B, '%', '-', '1', '2', '3', '4', '5', 'X',
};
// clang-format on

Bytes headerWith(std::uint8_t command, const Bytes& parameters) {
  Bytes bytes = kFreshHeader;
  bytes[37] = command;
  std::copy(parameters.begin(), parameters.end(), bytes.begin() + 38);
  return bytes;
}

TEST(Pjl, UelHasNineBytes) { EXPECT_THAT(kUel, ElementsAreArray("\x1B%-12345X", 9)); }

TEST(Pjl, StatusOffStandsBetweenTwoUels) {
  ASSERT_EQ(kUstatusOffBytes.size(), 34u);
  EXPECT_EQ(bytesOf(kUstatusOff), kUstatusOffBytes);
}

TEST(PjlAclRequestHeader, IsFreshWithoutACommand) {
  ASSERT_EQ(kFreshHeader.size(), 50u);
  EXPECT_EQ(bytesOf(PjlAclRequestHeader()), kFreshHeader);
}

TEST(PjlAclRequestHeader, CommandChangesTwoBytes) {
  PjlAclRequestHeader header;
  header.setCommand(6);
  EXPECT_EQ(bytesOf(header), headerWith(6, {}));
}

TEST(PjlAclRequestHeader, CommandIsBigEndian) {
  PjlAclRequestHeader header;
  header.setCommand(0x1234);
  EXPECT_EQ(bytesOf(header)[36], 0x12);
  EXPECT_EQ(bytesOf(header)[37], 0x34);
}

TEST(PjlAclRequestHeader, CarriesTheBurnParameters) {
  FirmwareBurnParameters parameters;
  parameters.mCheckSum = 0xFEFA;
  parameters.mLength = 0x01020304;
  PjlAclRequestHeader header;
  header.setCommand(15);
  header.setParameters(parameters);
  EXPECT_EQ(bytesOf(header), headerWith(15, {0x04, 0x00,                 // always 1024
                                             0xFE, 0xFA,                 // checksum
                                             0x00, 0x00, 0x00, 0x00,     // always 0
                                             0x01, 0x02, 0x03, 0x04}));  // length
}

TEST(PjlAclRequestHeader, ClearLeavesPreambleAndPrefix) {
  FirmwareBurnParameters parameters;
  parameters.mCheckSum = 0xFEFA;
  parameters.mLength = 3;
  PjlAclRequestHeader header;
  header.setCommand(15);
  header.setParameters(parameters);
  header.clear();
  EXPECT_EQ(bytesOf(header), kFreshHeader);
}

TEST(PjlSimpleAclRequest, IsAHeaderAndAClosingUel) {
  Bytes expected = headerWith(6, {});
  for (const char byte : {'\x1B', '%', '-', '1', '2', '3', '4', '5', 'X'}) {
    expected.push_back(static_cast<std::uint8_t>(byte));
  }
  PjlSimpleAclRequest request;
  request.setCommand(6);
  EXPECT_EQ(bytesOf(request).size(), 59u);
  EXPECT_EQ(bytesOf(request), expected);
}

class AclResponseTest : public testing::Test {
 protected:
  AclResponseTest() { Log<7>() << std::dec << std::setfill(' '); }

  static AclResponse response(const std::array<std::uint8_t, 16>& bytes) {
    return std::bit_cast<AclResponse>(bytes);
  }

  LogRecorder mRecorder;

  const AclResponse mDeviceIdResponse = response({0x00, 0xAC,  // prefix
                                                  0x00, 0x06,  // command
                                                  0x00, 0x01,  // status
                                                  0x01, 0x23,  // data length
                                                  0xDE, 0xAD, 0xBE, 0xEF, 0x00, 0x0A, 0x7F, 0x80});
};

TEST_F(AclResponseTest, TellsTheDeviceIdsLength) {
  EXPECT_EQ(mDeviceIdResponse.getIeee1284ResponseLen(), 0x0123);
}

TEST_F(AclResponseTest, AnswersOnlyItsOwnCommand) {
  EXPECT_TRUE(mDeviceIdResponse.responseIsValid(6));
  EXPECT_FALSE(mDeviceIdResponse.responseIsValid(15));
  EXPECT_FALSE(mDeviceIdResponse.responseIsValid(0x0600));
}

TEST_F(AclResponseTest, EveryFieldMustBeRight) {
  const std::array<std::uint8_t, 16> good = {0, 0xAC, 0, 6, 0, 1, 0, 9};
  EXPECT_TRUE(response(good).responseIsValid(6));
  EXPECT_EQ(response(good).getIeee1284ResponseLen(), 9);
  for (std::size_t i = 0; i < 6; ++i) {
    std::array<std::uint8_t, 16> bad = good;
    bad[i] ^= 1;
    EXPECT_FALSE(response(bad).responseIsValid(6)) << "byte " << i;
    EXPECT_EQ(response(bad).getIeee1284ResponseLen(), 0) << "byte " << i;
  }
}

TEST_F(AclResponseTest, BurnReplyWithStatusTwoIsNotValid) {
  EXPECT_TRUE(response({0, 0xAC, 0, 15, 0, 1}).responseIsValid(15));
  EXPECT_FALSE(response({0, 0xAC, 0, 15, 0, 2}).responseIsValid(15));
}

TEST_F(AclResponseTest, BurnReplyHasNoDeviceIdLength) {
  EXPECT_EQ(response({0, 0xAC, 0, 15, 0, 1, 0, 9}).getIeee1284ResponseLen(), 0);
}

TEST_F(AclResponseTest, DeviceIdOfLengthZeroIsToldLikeAnInvalidResponse) {
  EXPECT_EQ(response({0, 0xAC, 0, 6, 0, 1, 0, 0}).getIeee1284ResponseLen(), 0);
}

TEST_F(AclResponseTest, IsClearedToZeros) {
  EXPECT_EQ(bytesOf(AclResponse()), Bytes(16, 0));
  EXPECT_FALSE(AclResponse().responseIsValid(0));
}

TEST_F(AclResponseTest, LogsFieldsAndRawBytes) {
  mDeviceIdResponse.logResponse();
  EXPECT_THAT(
      mRecorder.entries(),
      ElementsAre(
          LogEntry{7, "ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1"},
          LogEntry{7, "ACL Response raw: 00 ac 00 06 00 01 01 23 de ad be ef 00 0a 7f 80 "}));
}

TEST_F(AclResponseTest, LogsAStatusWithoutLeadingZeros) {
  response({0xFF, 0xFF, 0x12, 0x34, 0x0A, 0xBC}).logResponse();
  EXPECT_EQ(mRecorder.entries().front(),
            (LogEntry{7, "ACL Response: prefix=ffff; cmd ID=1234; cmdStatus=abc"}));
}

TEST_F(AclResponseTest, EveryQuestionAddsTwoDebugEntries) {
  const AclResponse invalid;
  invalid.responseIsValid(15);
  EXPECT_EQ(mRecorder.entries().size(), 2u);
  invalid.getIeee1284ResponseLen();
  EXPECT_THAT(
      mRecorder.entries(),
      ElementsAre(
          LogEntry{7, "ACL Response: prefix=0000; cmd ID=0000; cmdStatus=0"},
          LogEntry{7, "ACL Response raw: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "},
          LogEntry{7, "ACL Response: prefix=0000; cmd ID=0000; cmdStatus=0"},
          LogEntry{7, "ACL Response raw: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "}));
}

TEST_F(AclResponseTest, LeavesDecimalAndTheFillCharacterZero) {
  mDeviceIdResponse.logResponse();
  mRecorder.takeEntries();
  Log<7>() << std::setw(6) << 172 << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{7, "000172"}));
}

}  // namespace
