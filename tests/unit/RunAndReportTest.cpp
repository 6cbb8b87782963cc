#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "IoKitException.h"
#include "LogRecorder.h"
#include "runAndReport.h"

namespace {

using Entries = std::vector<LogEntry>;

class RunAndReportTest : public testing::Test {
 protected:
  LogRecorder mLog;
};

TEST_F(RunAndReportTest, ProgramThatReturnsEndsWithZero) {
  bool ran = false;
  EXPECT_EQ(runAndReport([&] { ran = true; }), 0);
  EXPECT_TRUE(ran);
  EXPECT_EQ(mLog.entries(), Entries{});
}

TEST_F(RunAndReportTest, IoKitErrorIsNamedBeforeOtherRuntimeErrors) {
  EXPECT_EQ(runAndReport([] {
              throw IoKitException("IOServiceAddMatchingNotification failed.", 0xe00002c0);
            }),
            1);
  EXPECT_EQ(mLog.entries(),
            (Entries{{3,
                      "I/O Kit error occurred: IOServiceAddMatchingNotification failed. "
                      "[return value = 0xe00002c0]"}}));
}

TEST_F(RunAndReportTest, RuntimeErrorIsLogged) {
  EXPECT_EQ(runAndReport([] { throw std::runtime_error("NIB reference is null."); }), 1);
  EXPECT_EQ(mLog.entries(),
            (Entries{{3, "General runtime error occurred: NIB reference is null."}}));
}

TEST_F(RunAndReportTest, LackOfMemoryIsLogged) {
  EXPECT_EQ(runAndReport([] { throw std::bad_alloc(); }), 1);
  EXPECT_EQ(mLog.entries(), (Entries{{3, "Allocation error occurred: std::bad_alloc"}}));
}

TEST_F(RunAndReportTest, OtherExceptionsPassThrough) {
  EXPECT_THROW(runAndReport([] { throw std::logic_error("misuse"); }), std::logic_error);
  EXPECT_THROW(runAndReport([] { throw 7; }), int);
  EXPECT_EQ(mLog.entries(), Entries{});
}

}  // namespace
