// Help for somebody who finds no printer, or asks somebody else: by keys and by assistive
// technology.
#include <gmock/gmock.h>

#include "DesktopTest.h"
#include "OnlyStack.h"
#include "PrivateNetwork.h"

namespace {

using namespace std::chrono_literals;
using desktop::Node;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class HelpInTheWindow : public DesktopTest {
 protected:
  std::string listDescription() {
    const auto list = desktop::findNode(program().pid(), "tree", "Printers", 20s);
    return list ? list->description() : "";
  }

  bool waitForDescription(const std::string& text) {
    return desktop::waitUntil([&] { return listDescription().find(text) != std::string::npos; },
                              40s);
  }

  // What is on the clipboard, as far as it goes into a line.
  std::string pasted() {
    press("F1");
    waitForActive("Manual");
    press("alt+f");
    press("ctrl+v");
    const auto isFilled = [](const Node& node) {
      return node.role() == "text" && node.name() == "Find in the manual" && !node.text().empty();
    };
    const auto field = desktop::findNode(program().pid(), isFilled, 20s);
    const std::string text = field ? field->text() : "";
    press("Escape");
    waitForActive("Printer Firmware Update");
    return text;
  }

  // By the menu's keys.
  std::string copiedDiagnostics() {
    press("alt+h");
    keepPicture("1-menu");
    press("c");
    EXPECT_TRUE(
        desktop::findNode(program().pid(), "alert", "Diagnostic information was copied.", 20s));
    keepPicture("2-copied");
    return pasted();
  }
};

TEST_F(HelpInTheWindow, AnEmptyListSaysWhatToCheckUntilThereIsAPrinter) {
  startProgram();
  EXPECT_EQ(listDescription(), "Looking for printers…");
  keepPicture("1-looking");
  EXPECT_TRUE(waitForDescription("No printer has been found yet. Please check:"));
  EXPECT_THAT(listDescription(), Not(HasSubstr("avahi-daemon")));
  keepPicture("2-advice");
  auto printer = startPrinter("Office");
  cell("Office");
  EXPECT_EQ(listDescription(), "");
  printer.reset();
  EXPECT_TRUE(waitForDescription("Looking for printers…"));
  EXPECT_TRUE(waitForDescription("No printer has been found yet. Please check:"));
}

TEST_F(HelpInTheWindow, F1ShowsTheManualAndEscapeClosesIt) {
  startProgram();
  press("F1");
  waitForActive("Manual");
  const auto text = desktop::findNode(
      program().pid(),
      [](const Node& node) {
        return node.text().find("update the firmware of Veltra KX350T") != std::string::npos;
      },
      20s);
  EXPECT_TRUE(text);
  keepPicture("1-manual");
  press("alt+f");
  for (const char* key : {"s", "t", "a", "l", "l"}) press(key);
  keepPicture("2-found");
  for (const char* key : {"x", "y"}) press(key);
  labelWith("Not found.");
  press("Escape");
  waitForActive("Printer Firmware Update");
  EXPECT_TRUE(programRuns());
}

TEST_F(HelpInTheWindow, AboutIsReachedByTheMenusKeys) {
  startProgram();
  press("alt+h");
  press("a");
  waitForActive("About Printer Firmware Update");
  labelWith("Version 1.0.0");
  labelWith("libusb 1.0.");
  keepPicture("about");
  press("Escape");
  waitForActive("Printer Firmware Update");
}

TEST_F(HelpInTheWindow, CopiesWhatSomebodyElseNeedsToKnow) {
  startProgram({{"USER", "anna"}, {"HOME", "/home/anna"}});
  const std::string text = copiedDiagnostics();
  EXPECT_THAT(text, AllOf(HasSubstr("Firmware updater 1.0.0"), HasSubstr("Qt 6."),
                          HasSubstr("Avahi daemon:"), HasSubstr("avahi 0."),
                          HasSubstr("done by the daemon"), HasSubstr("product.brand.bin: "),
                          HasSubstr(" version 200"), HasSubstr("Qt platform xcb")));
  EXPECT_THAT(text, Not(HasSubstr("anna")));
  EXPECT_EQ(timesLogged("Unknown UI command: 0"), 0u);
}

TEST_F(HelpInTheWindow, TellsSomebodyElseThatNoDaemonSearches) {
  privatenetwork::stopDaemon();
  const auto printer = startPrinter("Office", {"--announce", "in-process"});
  startProgram();
  cell("Office");
  EXPECT_THAT(copiedDiagnostics(), AllOf(HasSubstr("Avahi daemon:\n  not running\n"),
                                         HasSubstr("done by the program itself")));
}

TEST_F(HelpInTheWindow, TellsSomebodyElseThatNobodySearches) {
  privatenetwork::stopDaemon();
  const OnlyStack alone;
  ASSERT_TRUE(alone.holds());
  startProgram();
  EXPECT_TRUE(waitForLog("Bonjour discovery error: domain=10 error code=-72000 [0xfffee6c0]"));
  EXPECT_THAT(copiedDiagnostics(),
              AllOf(HasSubstr("Avahi daemon:\n  not running\n"), HasSubstr("done by nobody")));
}

TEST_F(HelpInTheWindow, IsNotOfferedWhileAQuestionIsUp) {
  const auto printer = startPrinter("Office");
  startProgram();
  press("F1");
  waitForActive("Manual");
  press("Escape");
  waitForActive("Printer Firmware Update");
  askForUpdate("Office");
  press("F1");
  answerByKey("Escape", "Do not download");
  EXPECT_FALSE(isOnScreen("dialog", "Manual"));
}

}  // namespace
