// What a window says of a download while it runs and when it has ended.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <string_view>

#include "DesktopTest.h"
#include "ScreenReader.h"

namespace {

using desktop::Node;
using testing::HasSubstr;
using testing::StartsWith;

class Watching : public DesktopTest {
 protected:
  using DesktopTest::DesktopTest;

  int titleHeight(const std::string& window) { return desktop().windowSize(window)->second; }
};

TEST_F(Watching, SheetSaysWhatHappensAndTheWindowHowItEnded) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "4"});
  startProgram();
  const Node::Rectangle list = cell("Office").extents();
  startUpdate("Office");
  labelWith("The printer is writing its memory: this may take up to 51 second");
  EXPECT_THAT(progressBar().description(),
              StartsWith("The printer is writing its memory: this may take up to 51 second"));
  keepPicture("1-writing");
  const Node outcome = labelWith(" was updated to version 200 at ");
  EXPECT_THAT(outcome.name(), StartsWith("Office ("));
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  keepPicture("2-done");
  EXPECT_EQ(outcome.role(), "alert");
  EXPECT_LE(list.y, outcome.extents().y);
}

// A step that is over before the reader has asked for its text is heard as the next one.
TEST_F(Watching, AScreenReaderHearsOfEachStepAndOfTheEnd) {
  const auto printer = startPrinter("Office", {"--burn-seconds", "12"});
  startProgram();
  desktop::ScreenReader reader;
  startUpdate("Office");
  labelWith(" was updated to version 200 at ");
  const auto heard = [&](const std::string& text) {
    return desktop::waitUntil(
        [&] {
          return std::any_of(
              reader.alerts().begin(), reader.alerts().end(),
              [&](const std::string& alert) { return alert.find(text) != std::string::npos; });
        },
        std::chrono::seconds(20));
  };
  for (const char* text :
       {"Asking the printer for its version",
        "The printer is writing its memory: this may take up to 51 second", "Office ("}) {
    EXPECT_TRUE(heard(text)) << text << ": " << testing::PrintToString(reader.alerts());
  }
  EXPECT_THAT(reader.values(), testing::AllOf(testing::Ge(2u), testing::Le(20u)));
  // One for each step, although the bar is refreshed four times a second.
  EXPECT_THAT(reader.descriptions(), testing::AllOf(testing::Ge(2u), testing::Le(8u)));
}

// Mostly within a minute; times have no seconds there, so that both lines are the same.
TEST_F(Watching, SecondUpdateOfAPrinterIsHeardLikeTheFirst) {
  startProgram({{"LC_ALL", "en_US.UTF-8"}});
  desktop::ScreenReader reader;
  for (std::ptrdiff_t update = 1; update <= 2; ++update) {
    const auto printer = startPrinter("Office");
    startUpdate("Office");
    const auto heard = [&] {
      return std::ranges::count_if(reader.alerts(), [](const std::string& alert) {
        return alert.find(" was updated to version 200 at ") != std::string::npos;
      });
    };
    EXPECT_TRUE(desktop::waitUntil([&] { return heard() == update; }, std::chrono::seconds(20)))
        << testing::PrintToString(reader.alerts());
    EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
    printer->stop();
    EXPECT_TRUE(waitUntilGone("table cell", "Office"));
  }
}

// The time that the printer has grows with the image: 3 seconds for a small one.
TEST_F(Watching, PrinterThatTakesLongerIsNoSecret) {
  const auto program = copyInstallation();
  std::ofstream(program.parent_path().parent_path() / "share/fwupdate/product.brand.bin")
      << std::string_view(
             "FIRMWARE"
             "ABC\0"
             "00000200XYZ\0"
             "Q\0"
             "\x03\x12",
             28);
  const auto printer = startPrinter("Office", {"--burn-seconds", "8"});
  startProgramAt(program);
  startUpdate("Office");
  labelWith("The printer is writing its memory: this may take up to 3 second");
  labelWith("The printer takes longer than expected to write its memory");
  keepPicture("longer");
  labelWith("Office (");
  labelWith(" was updated to version 200 at ");
}

TEST_F(Watching, SilenceOfANetworkPrinterIsTold) {
  const auto printer = startPrinter("Office", {"--fault", "silence@id-request"});
  startProgram();
  startUpdate("Office");
  labelWith("Asking the printer for its version");
  const int height = titleHeight("Updating Firmware");
  keepPicture("1-asking");
  labelWith("The printer has not answered for more than 30 seconds.");
  keepPicture("2-silent");
  EXPECT_GT(titleHeight("Updating Firmware"), height);
}

TEST_F(Watching, NameOf63BytesStaysInTheWindow) {
  const std::string name(63, 'W');
  const auto printer = startPrinter(name);
  startProgram();
  startUpdate(name);
  const Node outcome = labelWith(" was updated to version 200 at ");
  EXPECT_THAT(outcome.name(), HasSubstr(name + " ("));
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  keepPicture("done");
  const auto [width, height] = desktop().windowSize("Printer Firmware Update").value();
  EXPECT_LE(outcome.extents().width, width);
  EXPECT_LE(outcome.extents().height, height / 4);
}

}  // namespace
