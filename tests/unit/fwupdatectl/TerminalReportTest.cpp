// What a person sees of an update: each expectation is a screen of the terminal, row by row.
#include <gmock/gmock.h>

#include <clocale>
#include <sstream>
#include <string>

#include "TerminalReport.h"
#include "TerminalScreen.h"

namespace {

using nlohmann::ordered_json;
using testing::ElementsAre;

const UpdateResult kUpdated{UpdateResult::Outcome::Updated, 100, 200};

Target printer(int number) {
  const std::string address = "10.0.0." + std::to_string(number) + ":9100";
  return {Target::Connection::Network, "Printer " + std::to_string(number), {}, address};
}

ordered_json phase(const char* name) { return {{"event", "phase"}, {"phase", name}}; }

ordered_json progress(std::size_t bytes) {
  return {{"event", "progress"}, {"bytes", bytes}, {"total", 1000000}};
}

class TerminalReportTest : public testing::Test {
 protected:
  TerminalReportTest() { std::setlocale(LC_CTYPE, "C.UTF-8"); }
  ~TerminalReportTest() override { std::setlocale(LC_CTYPE, "C"); }

  // On a terminal of this size, on which a shell stands in the first row.
  void begin(int rows, int columns, std::size_t printers) {
    mSize = {static_cast<std::size_t>(rows), static_cast<std::size_t>(columns)};
    mScreen.emplace(rows, columns);
    mScreen->write("$ update\r\n");
    mReport.emplace(
        mOutput, mOutput, [this] { return mSize; }, printers);
  }

  void resize(int rows, int columns) {
    screen();
    mScreen->resize(rows, columns);
    mSize = {static_cast<std::size_t>(rows), static_cast<std::size_t>(columns)};
    mReport->hide();
    mReport->show();
  }

  // With all that has been written by now.
  TerminalScreen& screen() {
    for (const char byte : mOutput.str()) mScreen->write(byte == '\n' ? "\r\n" : std::string{byte});
    mOutput.str("");
    return *mScreen;
  }

  std::vector<std::string> rows() { return screen().rows(); }

  // How it stands in a terminal of so many columns when 40 % of the firmware are sent.
  std::string rowOfSending(int columns, const Target& target) {
    begin(24, columns, 1);
    mReport->began(target);
    mReport->told(target, phase("sending-firmware"));
    mReport->told(target, progress(400000));
    return rows().at(1);
  }

  std::ostringstream mOutput;
  TerminalSize mSize;
  std::optional<TerminalScreen> mScreen;
  std::optional<TerminalReport> mReport;
};

TEST_F(TerminalReportTest, EachPrinterHasARowBelowTheOutcomes) {
  begin(24, 80, 2);
  mReport->began(printer(1));
  mReport->began(printer(2));
  mReport->told(printer(1), phase("connecting"));
  EXPECT_THAT(rows(), ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): connecting",
                                  "Printer 2 (10.0.0.2:9100): starting"));
  mReport->ended(printer(1), kUpdated);
  EXPECT_THAT(rows(),
              ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): updated to version 200 (was 100)",
                          "Printer 2 (10.0.0.2:9100): starting", "1 updated, 1 at work"));
  mReport->ended(printer(2), {.cause = "It is off."});
  mReport->summed({.updated = 1, .failed = 1});
  EXPECT_THAT(rows(),
              ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): updated to version 200 (was 100)",
                          "Printer 2 (10.0.0.2:9100): failed: It is off.", "1 updated, 1 failed"));
  EXPECT_EQ(screen().cursor(), (TerminalScreen::Position{4, 0}));
  EXPECT_TRUE(screen().isCursorVisible());
}

TEST_F(TerminalReportTest, NarrowerTerminalsLeaveOutMore) {
  EXPECT_EQ(rowOfSending(100, printer(1)),
            "Printer 1 (10.0.0.1:9100): sending the firmware [########------------] 0.4 MB of "
            "1.0 MB");
  EXPECT_EQ(rowOfSending(80, printer(1)),
            "Printer 1 (10.0.0.1:9100): sending the firmware [########------------] 40 %");
  EXPECT_EQ(rowOfSending(61, printer(1)),
            "Printer 1 (10.0.0.1:9100): sending the firmware [##---] 40 %");
  EXPECT_EQ(rowOfSending(60, printer(1)), "Printer 1 (10.0.0.1:9100): sending the firmware 40 %");
  EXPECT_EQ(rowOfSending(40, printer(1)), "Printer 1: sending the firmware 40 %");
  EXPECT_EQ(rowOfSending(20, printer(1)), "Printer 1: 40 %");
  EXPECT_EQ(rowOfSending(13, printer(1)), "Print\u2026: 40 %");
  EXPECT_EQ(rowOfSending(8, printer(1)), "Pr\u2026: 4\u2026");
}

TEST_F(TerminalReportTest, NarrowestTerminalShowsThatSomethingIsCut) {
  begin(24, 20, 1);
  mSize.columns = 1;
  mReport->began(printer(1));
  EXPECT_EQ(rows().at(1), "\u2026");
}

TEST_F(TerminalReportTest, PhaseIsCutWhereNothingElseIsLeft) {
  const auto rowOfBurning = [this](int columns) {
    begin(24, columns, 1);
    mReport->began(printer(1));
    mReport->told(printer(1), phase("burning-firmware"));
    return rows().at(1);
  };
  EXPECT_EQ(rowOfBurning(62), "Printer 1 (10.0.0.1:9100): the printer is writing its memory");
  EXPECT_EQ(rowOfBurning(60), "Printer 1: writing its memory");
  EXPECT_EQ(rowOfBurning(20), "Printer 1: writing\u2026");
  EXPECT_EQ(rowOfBurning(16), "Printe\u2026: writi\u2026");
}

TEST_F(TerminalReportTest, InterruptedRunSaysHowItEnds) {
  begin(24, 80, 9);
  mReport->began(printer(1));
  mReport->interrupted();
  EXPECT_THAT(rows(),
              ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): starting", "1 at work, 8 to go",
                          "Ends when these are done. Ctrl+C again ends at once."));
  resize(3, 80);
  EXPECT_THAT(screen().allRows(),
              ElementsAre("$ update", "1 at work (1 not shown), 8 to go",
                          "Ends when these are done. Ctrl+C again ends at once."));
  resize(2, 80);
  EXPECT_EQ(rows().back(), "1 at work (1 not shown), 8 to go");
  mReport->ended(printer(1), kUpdated);
  EXPECT_EQ(rows().back(), "Printer 1 (10.0.0.1:9100): updated to version 200 (was 100)");
}

TEST_F(TerminalReportTest, WideCharactersAndAccentsTakeTheirColumns) {
  const Target wide{
      Target::Connection::Usb, "\u4E8B\u52A1\u5BA4\U0001F5A8\u6253\u5370\u673A", "S", {}};
  EXPECT_EQ(rowOfSending(19, wide), "\u4E8B\u52A1\u5BA4\U0001F5A8\u6253\u5370\u2026: 40 %");
  EXPECT_EQ(rowOfSending(18, wide), "\u4E8B\u52A1\u5BA4\U0001F5A8\u6253\u2026: 40 %");
  EXPECT_EQ(rowOfSending(60, wide),
            "\u4E8B\u52A1\u5BA4\U0001F5A8\u6253\u5370\u673A (S): sending the firmware "
            "[####--------] 40 %");
  const Target accents{Target::Connection::Usb, "Bu\u0308ro im e\u0301tage", "S", {}};
  EXPECT_EQ(rowOfSending(19, accents), "Bu\u0308ro im e\u0301ta\u2026: 40 %");
}

TEST_F(TerminalReportTest, ForgedNameMovesNothing) {
  begin(24, 80, 2);
  mReport->began({Target::Connection::Usb,
                  "A\x1B[2J\r\n\x9B"
                  "1A\u202E",
                  "\x07S\u2066",
                  {}});
  mReport->began(printer(2));
  EXPECT_THAT(rows(), ElementsAre("$ update",
                                  "A\uFFFD[2J\uFFFD\uFFFD\uFFFD1A\uFFFD (\uFFFDS\uFFFD): starting",
                                  "Printer 2 (10.0.0.2:9100): starting"));
}

// Whatever a terminal makes of a character that this program takes for a narrow one.
TEST_F(TerminalReportTest, RowThatIsWiderThanItSeemsStaysOne) {
  begin(24, 20, 2);
  std::setlocale(LC_CTYPE, "C");
  mReport->began(
      {Target::Connection::Usb, "\u4E8B\u52A1\u5BA4\u6253\u5370\u673A\u4E8B\u52A1\u5BA4", {}, {}});
  mReport->began(printer(2));
  EXPECT_THAT(rows(), ElementsAre("$ update", testing::StartsWith("\u4E8B\u52A1\u5BA4"),
                                  "Printer 2: starting"));
  mReport->ended(printer(2), kUpdated);
  EXPECT_THAT(rows().at(1), "Printer 2 (10.0.0.2:");
}

TEST_F(TerminalReportTest, MorePrintersThanRowsAreCounted) {
  begin(4, 80, 300);
  for (int number = 1; number <= 5; ++number) mReport->began(printer(number));
  EXPECT_THAT(rows(), ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): starting",
                                  "Printer 2 (10.0.0.2:9100): starting",
                                  "5 at work (3 not shown), 295 to go"));
  mReport->ended(printer(1), kUpdated);
  mReport->ended(printer(3), {.cause = "It is off."});
  EXPECT_THAT(
      screen().allRows(),
      ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): updated to version 200 (was 100)",
                  "Printer 3 (10.0.0.3:9100): failed: It is off.",
                  "Printer 2 (10.0.0.2:9100): starting", "Printer 4 (10.0.0.4:9100): starting",
                  "1 updated, 1 failed, 3 at work (1 not shown), 295 to go"));
}

TEST_F(TerminalReportTest, LowTerminalHasTheCountsAlone) {
  for (const int height : {1, 2}) {
    begin(height, 80, 3);
    for (int number = 1; number <= 3; ++number) mReport->began(printer(number));
    EXPECT_EQ(rows().back(), "3 at work (3 not shown)");
    for (int number = 1; number <= 3; ++number) mReport->ended(printer(number), kUpdated);
    EXPECT_EQ(screen().cursor(), (TerminalScreen::Position{height - 1, 0}));
  }
  EXPECT_THAT(screen().allRows(),
              ElementsAre("$ update", "Printer 1 (10.0.0.1:9100): updated to version 200 (was 100)",
                          "Printer 2 (10.0.0.2:9100): updated to version 200 (was 100)",
                          "Printer 3 (10.0.0.3:9100): updated to version 200 (was 100)"));
}

TEST_F(TerminalReportTest, LongLogLineGoesAboveAndStaysWhole) {
  begin(24, 20, 1);
  mReport->began(printer(1));
  mReport->logged(printer(1), "Unable to write data\x1B[2J");
  EXPECT_THAT(rows(), ElementsAre("$ update", "Printer 1 (10.0.0.1:", "9100): Unable to wri",
                                  "te data\uFFFD[2J", "Printer 1: starting"));
}

TEST_F(TerminalReportTest, FailuresAndTheLogAreErrors) {
  std::ostringstream errors;
  TerminalReport report(
      mOutput, errors, [] { return TerminalSize(); }, 2);
  report.began(printer(1));
  report.logged(printer(1), "Unable to write data");
  report.ended(printer(1), {.cause = "It is off."});
  report.ended(printer(2), kUpdated);
  EXPECT_EQ(errors.str(),
            "Printer 1 (10.0.0.1:9100): Unable to write data\n"
            "Printer 1 (10.0.0.1:9100): failed: It is off.\n");
  EXPECT_THAT(mOutput.str(), testing::EndsWith("updated to version 200 (was 100)\n"));
}

TEST_F(TerminalReportTest, FollowsTheSizeOfTheTerminal) {
  begin(24, 100, 2);
  for (int number = 1; number <= 2; ++number) {
    mReport->began(printer(number));
    mReport->told(printer(number), phase("sending-firmware"));
    mReport->told(printer(number), progress(400000));
  }
  resize(10, 40);
  EXPECT_THAT(rows(), ElementsAre("$ update", "Printer 1: sending the firmware 40 %",
                                  "Printer 2: sending the firmware 40 %"));
  resize(3, 40);
  EXPECT_THAT(rows(), ElementsAre("$ update", "Printer 1: sending the firmware 40 %",
                                  "Printer 2: sending the firmware 40 %"));
  resize(2, 40);
  EXPECT_THAT(screen().allRows(), ElementsAre("$ update", "2 at work (2 not shown)"));
  resize(24, 80);
  EXPECT_THAT(
      screen().allRows(),
      ElementsAre("$ update",
                  "Printer 1 (10.0.0.1:9100): sending the firmware [########------------] 40 %",
                  "Printer 2 (10.0.0.2:9100): sending the firmware [########------------] 40 %"));
}

TEST_F(TerminalReportTest, ShowsOutcomesAloneWhereNothingMayBeRedrawn) {
  begin(24, 80, 2);
  mSize = {0, 0};
  mReport->began(printer(1));
  mReport->began(printer(2));
  mReport->told(printer(1), phase("connecting"));
  EXPECT_EQ(mOutput.str(), "");
  mReport->ended(printer(1), kUpdated);
  EXPECT_EQ(mOutput.str(), "Printer 1 (10.0.0.1:9100): updated to version 200 (was 100)\n");
}

TEST_F(TerminalReportTest, DrawsNothingAgainThatHasNotChanged) {
  begin(24, 80, 1);
  mReport->began(printer(1));
  mReport->told(printer(1), phase("connecting"));
  screen();
  mReport->told(printer(1), phase("connecting"));
  EXPECT_EQ(mOutput.str(), "");
}

TEST_F(TerminalReportTest, NothingOfItStaysBesideWhatOthersWrite) {
  begin(24, 80, 1);
  mReport->began(printer(1));
  mReport->hide();
  mOutput << "fwupdatectl: entry\n";
  mReport->show();
  EXPECT_THAT(rows(),
              ElementsAre("$ update", "fwupdatectl: entry", "Printer 1 (10.0.0.1:9100): starting"));
}

}  // namespace
