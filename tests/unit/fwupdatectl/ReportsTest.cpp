#include <gmock/gmock.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "Reports.h"

namespace {

using testing::ElementsAre;

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

const Target kPrinter{Target::Connection::Usb, "KX350T", "VT-0042", ""};

TEST(ReportsTest, LabelTellsPrintersOfOneNameApart) {
  EXPECT_EQ(labelOf(kPrinter), "KX350T (VT-0042)");
  EXPECT_EQ(labelOf({Target::Connection::Network, "Office", "", "10.0.0.5:9100"}),
            "Office (10.0.0.5:9100)");
  EXPECT_EQ(labelOf({Target::Connection::Network, "10.0.0.5:9100", "", "10.0.0.5:9100"}),
            "10.0.0.5:9100");
  EXPECT_EQ(labelOf({Target::Connection::Usb, "KX350T", "", ""}), "KX350T");
}

// Without the time, which is another one each time.
std::vector<std::string> jsonOf(const std::function<void(UpdateReport&)>& happens) {
  std::stringstream out;
  JsonReport report(out);
  happens(report);
  std::vector<std::string> lines;
  for (std::string line; std::getline(out, line);) {
    auto json = nlohmann::ordered_json::parse(line);
    json.erase("time");
    lines.push_back(json.dump());
  }
  return lines;
}

// Scripts tell by it what an administrator has to mend.
TEST(ReportsTest, JsonMarksAMissingRight) {
  EXPECT_THAT(
      jsonOf([](UpdateReport& report) {
        report.ended(kPrinter, {.cause = "No.", .nextStep = "Ask.", .isNotPermitted = true});
      }),
      ElementsAre(R"({"schema":1,"event":"outcome","printer":{"connection":"usb","name":"KX350T",)"
                  R"("serial":"VT-0042"},"outcome":"failed","cause":"No.","next_step":"Ask.",)"
                  R"("not_permitted":true})"));
}

TEST(ReportsTest, JsonLeavesOutWhatIsAboutTheProcess) {
  EXPECT_THAT(jsonOf([](UpdateReport& report) {
                for (const char* const kind : {"outcome", "cause", "failure"}) {
                  report.told(kPrinter, {{"event", kind}, {"message", "x"}});
                }
                report.told(kPrinter, {{"event", "error"}, {"message", "x"}});
              }),
              ElementsAre(R"({"event":"error","message":"x","printer":{"connection":"usb",)"
                          R"("name":"KX350T","serial":"VT-0042"}})"));
}

TEST(ReportsTest, EachPhaseHasItsWords) {
  const auto words = [](const char* phase) {
    return phaseOf({{"event", "phase"}, {"phase", phase}});
  };
  EXPECT_EQ(words("connecting"), "connecting");
  EXPECT_EQ(words("asking-for-version"), "asking for its version");
  EXPECT_EQ(words("choosing-firmware"), "choosing its firmware");
  EXPECT_EQ(words("sending-firmware"), "sending the firmware");
  EXPECT_EQ(words("burning-firmware"), "the printer is writing its memory");
  EXPECT_EQ(words("waiting-for-return"), "waiting until it is back");
  EXPECT_EQ(words("another"), "");
  EXPECT_EQ(phaseOf({{"event", "error"}, {"phase", "connecting"}}), "");
}

}  // namespace
