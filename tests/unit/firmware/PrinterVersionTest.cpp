#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "FirmwareLoader.h"
#include "LogRecorder.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class PrinterVersionTest : public testing::Test {
 protected:
  LogRecorder mRecorder;
};

TEST_F(PrinterVersionTest, IsTheNumberInFwver) {
  EXPECT_EQ(extractVersionFromIeee1284Id(L"MFG:Veltra;MDL:KX350T;FWVER:100;\0"s), 100u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, "Firmware version in IEEE 1284 string: 100"}));
}

TEST_F(PrinterVersionTest, IsZeroWithoutAnEntryWhenTheFieldIsAbsent) {
  EXPECT_EQ(extractVersionFromIeee1284Id(L"MDL:KX350T;"), 0u);
  EXPECT_EQ(extractVersionFromIeee1284Id(L"MDL:KX350T;FWVER:100"), 0u);
  EXPECT_THAT(mRecorder.entries(), IsEmpty());
}

TEST_F(PrinterVersionTest, OfAnEmptyFieldIsZero) {
  EXPECT_EQ(extractVersionFromIeee1284Id(L"FWVER:;"), 0u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, "Firmware version in IEEE 1284 string: "}));
}

TEST_F(PrinterVersionTest, EndsAtTheFirstOtherCharacter) {
  EXPECT_EQ(extractVersionFromIeee1284Id(L"FWVER:12a;"), 12u);
  EXPECT_EQ(extractVersionFromIeee1284Id(L"FWVER:1.9;"), 1u);
  EXPECT_EQ(extractVersionFromIeee1284Id(L"FWVER:v3;"), 0u);
}

TEST_F(PrinterVersionTest, BelowZeroIsAVeryHighVersion) {
  EXPECT_EQ(extractVersionFromIeee1284Id(L"FWVER:-1;"), 4294967295u);
}

TEST_F(PrinterVersionTest, BeyondThirtyTwoBitsIsTheLargest) {
  EXPECT_EQ(extractVersionFromIeee1284Id(L"FWVER:99999999999;"), 2147483647u);
}

TEST_F(PrinterVersionTest, WithAZeroInItIsReadUpToThat) {
  EXPECT_EQ(extractVersionFromIeee1284Id(std::wstring(L"FWVER:1\0002;", 10)), 1u);
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, "Firmware version in IEEE 1284 string: 1"}));
}

}  // namespace
