// What the alerts after a download say: which printer, why, and what to do; and the details, by
// clicks, by keys and by assistive technology.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "DesktopTest.h"

namespace {

using namespace std::chrono_literals;
using desktop::Node;
using testing::HasSubstr;
using testing::Not;

class FailureAlert : public DesktopTest {
 protected:
  using DesktopTest::DesktopTest;

  // Nothing else on the screen has a label so.
  Node line(const std::string& text) { return labelWith(text); }

  Node details() { return button("Details"); }

  // The text with the log; none while it is hidden.
  std::optional<Node> log(std::chrono::milliseconds limit = 20s) {
    return desktop::findNode(
        program().pid(), [](const Node& node) { return node.name() == "Log of this download"; },
        limit);
  }
};

struct Failure {
  std::string name;
  std::vector<std::string> options;  // of the printer
  std::string headline;
  std::string cause;
  std::string nextStep;
};

class EachFailure : public FailureAlert, public testing::WithParamInterface<Failure> {};

constexpr char kNotUpdated[] = "The firmware was not updated.";
constexpr char kNotConfirmed[] = "The printer did not confirm the update.";
constexpr char kLookLater[] = "It may still be writing its memory";

INSTANTIATE_TEST_SUITE_P(
    Of, EachFailure,
    testing::Values(Failure{"Refused",
                            {"--fault", "refuse"},
                            kNotUpdated,
                            "The printer refused the connection.",
                            "Wait until the printer has finished its other work"},
                    Failure{"Closed",
                            {"--fault", "reset@device-id"},
                            kNotUpdated,
                            "The printer closed the connection.",
                            "Wait until the printer has finished its other work"},
                    Failure{"NoFirmware",
                            {"--lic", "ZZ"},
                            kNotUpdated,
                            "There is no firmware for this model of printer.",
                            "Ask whoever supports this printer"},
                    Failure{"NoModel",
                            {"--fault", "no-mdl"},
                            kNotUpdated,
                            "The printer did not say which model it is.",
                            "Switch the printer off and on, then try again."},
                    Failure{"FirmwareRefused",
                            {"--fault", "fail-burn"},
                            kNotUpdated,
                            "The printer refused the firmware.",
                            "If it refuses again, ask whoever supports this printer."},
                    Failure{"AnotherAnswer",
                            {"--fault", "wrong-prefix@burn-reply"},
                            kNotConfirmed,
                            "The printer answered something that this program does not understand.",
                            kLookLater}),
    [](const auto& failure) { return failure.param.name; });

TEST_P(EachFailure, IsNamedWithItsPrinterAndTheNextStep) {
  const auto printer = startPrinter("Office", GetParam().options);
  startProgram();
  startUpdate("Office");
  waitForActive("Download Failed");
  line(GetParam().headline);
  line("Office");
  line(GetParam().cause);
  line(GetParam().nextStep);
  EXPECT_FALSE(log(0ms));
  keepPicture("closed");
  std::this_thread::sleep_for(1s);  // the alert takes nothing before
  click(details());
  EXPECT_TRUE(log());
  keepPicture("open");
  answer("Close");
  waitForActive("Printer Firmware Update");
}

TEST_F(FailureAlert, DetailsOpenAndAreCopiedByKeys) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  waitForActive("Download Failed");
  std::this_thread::sleep_for(1s);
  press("alt+d");
  const auto shown = log();
  ASSERT_TRUE(shown);
  EXPECT_TRUE(details().isExpanded());
  EXPECT_THAT(shown->text(), HasSubstr(" error: The firmware download failed on the printer."));
  EXPECT_THAT(shown->text(), Not(HasSubstr("Adding printer")));
  press("alt+o");
  button("Details copied");
  EXPECT_THAT(desktop().clipboard(),
              testing::AllOf(testing::StartsWith("The firmware was not updated.\nOffice ("),
                             HasSubstr("\nThe printer refused the firmware.\n"),
                             HasSubstr(" error: The firmware download failed on the printer.")));
  press("alt+d");
  EXPECT_TRUE(desktop::waitUntil([&] { return !log(0ms); }, 20s));
  EXPECT_FALSE(details().isExpanded());
  answerByKey("Escape", "Close");
  waitForActive("Printer Firmware Update");
}

TEST_F(FailureAlert, AScreenReaderOpensTheDetails) {
  const auto printer = startPrinter("Office", {"--fault", "fail-burn"});
  startProgram();
  startUpdate("Office");
  waitForActive("Download Failed");
  EXPECT_FALSE(details().isExpanded());
  EXPECT_TRUE(details().activate());
  EXPECT_TRUE(log());
  EXPECT_TRUE(details().isExpanded());
}

TEST_F(FailureAlert, DamagedFirmwareFileIsNotCalledUpToDate) {
  const auto printer = startPrinter("Office");
  const auto program = copyInstallation();
  const auto file = program.parent_path().parent_path() / "share/fwupdate" / "product.brand.bin";
  std::ofstream(file, std::ios::binary) << "no firmware";
  startProgramAt(program);
  startUpdate("Office");
  line("Nothing was sent to the printer.");
  line("Office");
  line("The file with the firmware is damaged.");
  line("Install the printer’s firmware again, then try again.");
  keepPicture("damaged");
}

// More than the connection holds.
TEST_F(FailureAlert, PrinterThatTakesNoMoreIsNamed) {
  const auto printer =
      startPrinter("Office", {"--fault", "hang@burn-header", "--fault", "receive-buffer=4096"});
  const auto program = copyInstallation();
  const auto file = program.parent_path().parent_path() / "share/fwupdate" / "product.brand.bin";
  std::ostringstream firmware;
  firmware << std::string(32u << 20, '\0') << std::ifstream(file, std::ios::binary).rdbuf();
  std::ofstream(file, std::ios::binary) << firmware.str();
  startProgramAt(program);
  startUpdate("Office");
  line("The firmware was not updated.");
  line("The printer stopped taking data.");
  line("Switch the printer off and on, then try again.");
}

// Of 512 x 384 units.
class FailureAlertOnASmallScreen : public FailureAlert {
 protected:
  FailureAlertOnASmallScreen() : FailureAlert(1024, 768) { setScale(2); }
};

TEST_F(FailureAlertOnASmallScreen, StaysOnIt) {
  const auto printer = startPrinter("Office", {"--fault", "wrong-prefix@burn-reply"});
  startProgram({{"QT_SCALE_FACTOR", "2"}});
  startUpdate("Office");
  waitForActive("Download Failed");
  std::this_thread::sleep_for(1s);
  press("alt+d");
  EXPECT_TRUE(log());
  const auto isOnScreen = [&](const Node::Rectangle& place) {
    return place.x >= 0 && place.y >= 0 && place.x + place.width <= 512 &&
           place.y + place.height <= 384;
  };
  EXPECT_TRUE(desktop::waitUntil([&] { return isOnScreen(button("Close").extents()); }, 20s));
  EXPECT_TRUE(isOnScreen(labelWith("The printer did not confirm the update.").extents()));
  keepPicture("small");
}

}  // namespace
