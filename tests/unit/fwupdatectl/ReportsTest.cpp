#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Reports.h"

namespace {

Target printer(int number) {
  const std::string address = "10.0.0." + std::to_string(number) + ":9100";
  return {Target::Connection::Network, "Printer", {}, address};
}

const UpdateResult kUpdated{UpdateResult::Outcome::Updated, 100, 200};

TEST(ReportsTest, TallyNamesWhatHappened) {
  EXPECT_EQ(sentenceOf(UpdateTally{.updated = 950, .failed = 50}), "950 updated, 50 failed");
  EXPECT_EQ(sentenceOf(UpdateTally{.upToDate = 2, .notStarted = 1}), "2 up to date, 1 not started");
}

TEST(ReportsTest, TallyCountsEachOutcome) {
  UpdateTally tally;
  for (const auto outcome : {UpdateResult::Outcome::Updated, UpdateResult::Outcome::UpToDate,
                             UpdateResult::Outcome::Failed, UpdateResult::Outcome::Failed,
                             UpdateResult::Outcome::NotStarted}) {
    tally.count(outcome);
  }
  EXPECT_EQ(sentenceOf(tally), "1 updated, 1 up to date, 2 failed, 1 not started");
  EXPECT_EQ(tally.all(), 5U);
}

TEST(ReportsTest, QuietReportHasNoSummary) {
  std::ostringstream results;
  std::ostringstream errors;
  PlainReport(results, errors, true).summed({.updated = 2});
  EXPECT_EQ(results.str(), "");
  PlainReport(results, errors, false).summed({.updated = 2});
  EXPECT_EQ(results.str(), "2 updated\n");
  EXPECT_EQ(errors.str(), "");
}

// What is drawn again must not have left the screen: the cursor cannot go up to it.
TEST(ReportsTest, PrintersThatAreMoreThanTheTerminalHasRowsAreCounted) {
  std::ostringstream terminal;
  TerminalReport report(terminal, 4, 80);
  for (int number = 1; number <= 3; ++number) report.began(printer(number));
  terminal.str("");
  report.began(printer(4));
  EXPECT_EQ(terminal.str(),
            "\x1B[3A\x1B[J"
            "Printer (10.0.0.1:9100): starting\n"
            "Printer (10.0.0.2:9100): starting\n"
            "and 2 more\n");
  terminal.str("");
  report.ended(printer(1), kUpdated);
  EXPECT_EQ(terminal.str(),
            "\x1B[3A\x1B[J"
            "Printer (10.0.0.1:9100): updated to version 200 (was 100)\n"
            "Printer (10.0.0.2:9100): starting\n"
            "Printer (10.0.0.3:9100): starting\n"
            "Printer (10.0.0.4:9100): starting\n");
}

}  // namespace
