// The windows in other sizes, colours and languages. What can be asserted is asserted; the pictures
// are for people.
#include <gmock/gmock.h>
#include <signal.h>

#include <fstream>

#include "Crowd.h"
#include "DesktopTest.h"

namespace {

using namespace std::chrono_literals;
using desktop::Node;
using testing::Gt;

class Appearance : public DesktopTest {
 protected:
  using DesktopTest::DesktopTest;

  // Question and progress, with a picture of each.
  void walkThrough(const std::string& name) {
    press("ctrl+d");
    waitForNotice();
    keepPicture(name + "-1-list");
    askForUpdate("Office");
    keepPicture(name + "-2-question");
    answer("Download firmware");
    labelWith("Do not switch the printer off");
    keepPicture(name + "-3-progress");
    button("Close");
    keepPicture(name + "-4-failed");
  }

  void waitForNotice() {
    EXPECT_TRUE(desktop::findNode(program().pid(), "alert", "Select a printer first.", 20s));
  }
};

TEST_F(Appearance, TextsScaleWithTheScreen) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  const auto [width, height] = desktop().windowSize("Printer Firmware Update").value();
  program().signal(SIGTERM);
  program().waitForExit(20s);
  setScale(2);
  startProgram({{"QT_SCALE_FACTOR", "2"}});
  cell("Office");
  EXPECT_EQ(desktop().windowSize("Printer Firmware Update").value(),
            std::pair(2 * width, 2 * height));
  walkThrough("double");
}

// A desktop's colour settings, in the form in which Qt reads them everywhere.
constexpr char kDarkColours[] = R"([Colors:Window]
BackgroundNormal=35,38,41
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
)";

TEST_F(Appearance, ADarkThemeReadsWell) {
  const std::filesystem::path config = output() / "config";
  std::filesystem::create_directories(config);
  std::ofstream(config / "kdeglobals") << kDarkColours;
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram({{"XDG_CURRENT_DESKTOP", "KDE"},
                {"KDE_SESSION_VERSION", "5"},
                {"XDG_CONFIG_HOME", config.string()}});
  cell("Office");
  walkThrough("dark");
}

// Printers by the dozen, and the question about one of them.
class QuestionAboutARow : public Appearance {
 protected:
  using Appearance::Appearance;

  // `key` moves the selection to a row that `times` as often.
  void expectRowInSight(const char* key, int times, const std::string& printer) {
    press("Home");
    for (int i = 0; i < times; ++i) press(key);
    EXPECT_TRUE(desktop::waitUntil([&] { return cell(printer).isSelected(); }, 20s)) << printer;
    press("Return");
    labelWith(printer + " (10.100.0.");
    const Node::Rectangle row = cell(printer).extents();
    const auto question = desktop::findNode(program().pid(), "dialog", "Confirm the Download", 20s);
    ASSERT_TRUE(question);
    const Node::Rectangle sheet = question->extents();
    keepPicture(printer);
    EXPECT_TRUE(row.y + row.height <= sheet.y - kTitleBar || row.y >= sheet.y + sheet.height)
        << printer << ": " << row.y << " " << sheet.y << " " << sheet.height;
    answerByKey("Escape", "Do not download");
    waitForActive("Printer Firmware Update");
  }

  void expectRowsInSight() {
    Crowd crowd({"--count", "40", "--ours", "40"});
    startProgram(mEnvironment);
    ASSERT_TRUE(waitForLog("Adding printer with ID=40"));
    expectRowInSight("Down", 0, "Printer 0001");
    expectRowInSight("Down", 4, "Printer 0005");
    expectRowInSight("Down", 20, "Printer 0021");
    expectRowInSight("End", 1, "Printer 0040");
  }

  desktop::ChildProcess::Environment mEnvironment;

 private:
  static constexpr int kTitleBar = 10;
};

TEST_F(QuestionAboutARow, LeavesItInSight) { expectRowsInSight(); }

class QuestionUnderMetacity : public QuestionAboutARow {
 protected:
  QuestionUnderMetacity() : QuestionAboutARow(1920, 1200, "metacity") {}
};

TEST_F(QuestionUnderMetacity, LeavesItsRowInSight) { expectRowsInSight(); }

class QuestionOnASmallScreen : public QuestionAboutARow {
 protected:
  QuestionOnASmallScreen() : QuestionAboutARow(1024, 768) {
    setScale(2);
    mEnvironment = {{"QT_SCALE_FACTOR", "2"}};
  }
};

TEST_F(QuestionOnASmallScreen, LeavesItsRowInSight) { expectRowsInSight(); }

// Of 512 x 384 units.
class SmallScreen : public Appearance {
 protected:
  SmallScreen() : Appearance(1024, 768) { setScale(2); }

  void expectToFit(const std::string& sheet) {
    const auto [width, height] = desktop().windowSize(sheet).value();
    const auto [roomX, roomY] = desktop().windowSize("Printer Firmware Update").value();
    EXPECT_LE(width, roomX) << sheet;
    EXPECT_LE(height, roomY) << sheet;
  }
};

TEST_F(SmallScreen, WindowsFitInDoubleSize) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram({{"QT_SCALE_FACTOR", "2"}});
  cell("Office");
  const auto [width, height] = desktop().windowSize("Printer Firmware Update").value();
  EXPECT_LE(width, 1024);
  EXPECT_GE(width, 900);
  EXPECT_LE(height, 768);
  walkThrough("small");
  expectToFit("Download Failed");
  expectToFit("Updating Firmware");
  answer("Close");
  askForUpdate("Office");
  expectToFit("Confirm the Download");
}

class WindowWidth : public Appearance {
 protected:
  static constexpr char kTitle[] = "Printer Firmware Update";

  int titleOffset(const std::string& title) {
    const auto header = desktop::findNode(program().pid(), "table column header", title, 20s);
    return header ? header->extents().x - frame() : -1;
  }

  // What follows a new width comes a little later.
  bool hasOffset(const std::string& title, int offset) {
    return desktop::waitUntil([&] { return titleOffset(title) == offset; }, 20s);
  }

  void resizeTo(int width) {
    const int height = desktop().windowSize(kTitle)->second;
    ASSERT_TRUE(desktop().resizeWindow(kTitle, width, height));
    EXPECT_TRUE(
        desktop::waitUntil([&] { return desktop().windowSize(kTitle)->first == width; }, 20s));
  }

 private:
  int frame() {
    const auto window = desktop::findNode(program().pid(), "frame", kTitle, 20s);
    return window ? window->extents().x : 0;
  }
};

TEST_F(WindowWidth, ColumnsComeBackFromANarrowWindow) {
  const auto printer = startPrinter("Office");
  startProgram();
  cell("Office");
  const int width = desktop().windowSize(kTitle)->first;
  const int offset = titleOffset("Type");
  for (const int narrow : {320, 250}) {
    resizeTo(narrow);
    EXPECT_TRUE(desktop::waitUntil([&] { return titleOffset("Type") < offset / 2; }, 20s));
    keepPicture("narrow");
    resizeTo(width);
    EXPECT_TRUE(hasOffset("Type", offset)) << titleOffset("Type") << " is not " << offset;
  }
  keepPicture("wide");
}

TEST_F(Appearance, DownloadWithoutASelectionSaysWhatIsMissing) {
  const auto printer = startPrinter("Office");
  startProgram();
  cell("Office");
  press("ctrl+d");
  waitForNotice();
  EXPECT_EQ(timesLogged("Failed to download firmware: Invalid list selection"), 1u);
  press("Down");
  enabledButton("Download");
  EXPECT_TRUE(waitUntilGone("alert", "Select a printer first."));
}

// The log keeps what the printer sent.
TEST_F(Appearance, NamesOfPrintersDoNotChangeHowTheirAddressReads) {
  const auto evil = startPrinter("Evil\u202Etxt.exe 350T", {"--burn-seconds", "3"});
  const auto arabic = startPrinter("طابعة المكتب 350", {"--burn-seconds", "3"});
  startProgram();
  cell("طابعة المكتب 350");
  cell("Evil\uFFFDtxt.exe 350T");
  EXPECT_TRUE(waitForLog("-> Adding: Evil\u202Etxt.exe 350T"));
  keepPicture("1-list");
  startUpdate("Evil\uFFFDtxt.exe 350T");
  labelWith("Evil\uFFFDtxt.exe 350T (");
  keepPicture("2-evil");
  EXPECT_TRUE(waitUntilGone("progress bar", "Download in progress"));
  startUpdate("طابعة المكتب 350");
  labelWith("طابعة المكتب 350 (");
  keepPicture("3-arabic");
}

TEST_F(Appearance, EveryControlHasAName) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  button("Close");
  const auto application = desktop::findApplication(program().pid());
  ASSERT_TRUE(application);
  int named = 0;
  for (const Node& node : application->allShowing()) {
    for (const char* role : {"push button", "tree", "progress bar", "menu bar", "menu item"}) {
      if (node.role() != role) continue;
      EXPECT_NE(node.name(), "") << application->dump();
      ++named;
    }
  }
  EXPECT_THAT(named, Gt(3));
}

}  // namespace
