#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Reports.h"

namespace {

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

}  // namespace
