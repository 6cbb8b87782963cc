#include <gtest/gtest.h>

#include <optional>

#include "checkFirmware.h"

namespace {

TEST(CheckFirmware, ProgramWithoutItsFilesIsAProblem) {
  const Findings findings = checkFirmware(std::nullopt);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_FALSE(findings[0].isWell);
  EXPECT_EQ(findings[0].subject, "Firmware");
  EXPECT_EQ(findings[0].text, "The program does not find its own files.");
  EXPECT_EQ(findings[0].nextStep, "Install the program again.");
}

}  // namespace
