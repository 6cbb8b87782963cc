#include <gtest/gtest.h>

#include "ErrorMessage.h"
#include "LogRecorder.h"

namespace {

TEST(ErrorMessage, NamesAndDescribesTheStatus) {
  LogRecorder recorder;
  recorder.statuses().define(2, "ENOENT", "No such file or directory");
  EXPECT_EQ(buildErrorMessage("Could not open data fork.", 2),
            "Could not open data fork. <status=2 => ENOENT; desc: No such file or directory>");
}

TEST(ErrorMessage, KeepsTheWholePatternForStatusZero) {
  const LogRecorder recorder;
  EXPECT_EQ(buildErrorMessage("Done.", 0), "Done. <status=0 => ; desc: >");
}

TEST(ErrorMessage, KeepsTheSignOfANegativeStatus) {
  LogRecorder recorder;
  recorder.statuses().define(-9874, "eventNotHandledErr", "");
  EXPECT_EQ(buildErrorMessage("No.", -9874), "No. <status=-9874 => eventNotHandledErr; desc: >");
}

TEST(ErrorMessage, TakesTheExtremeStatuses) {
  const LogRecorder recorder;
  EXPECT_EQ(buildErrorMessage("", -2147483647 - 1), " <status=-2147483648 => ; desc: >");
  EXPECT_EQ(buildErrorMessage("", 2147483647), " <status=2147483647 => ; desc: >");
}

}  // namespace
