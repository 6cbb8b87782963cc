// Every cell of an update by the window program that is ended, asked for a second download, or left
// by a service meanwhile. What keeps the computer awake is watched on its buses.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "BusServices.h"
#include "DesktopTest.h"
#include "DownloadFixture.h"
#include "PrivateNetwork.h"
#include "ShellCommand.h"
#include "WindowCells.h"

namespace {

using namespace std::chrono_literals;
using testing::StartsWith;

constexpr char kMainWindow[] = "Printer Firmware Update";

std::string lineByLine(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class FaultsOfTheWindow : public DesktopTest, public testing::WithParamInterface<std::size_t> {
 protected:
  FaultsOfTheWindow() : mCell(windowCells().at(GetParam())) {
    std::vector<std::string> options = printerOptions(mCell.faults);
    options.insert(options.end(), {"--faulty-conversations", "1"});
    if (mCell.verdict == Verdict::Updated) {
      options.insert(options.end(), {"--burn-seconds", "4"});
    }
    if (losesService()) options.insert(options.end(), {"--announce", "in-process"});
    mPrinter = startPrinter("Office", options);
    mProgram = copyInstallation();
    writeFirmware(mCell.firmwareSize);
  }

  void writeFirmware(std::size_t size) const {
    const auto resources = mProgram.parent_path().parent_path() / "share/fwupdate";
    std::ofstream(resources / "product.brand.bin", std::ios::binary)
        << std::string(size - firmware200().size(), 'x') << firmware200();
  }

  bool isSending() const { return mCell.firmwareSize != 28; }
  bool isAwaiting() const { return mCell.faults.back().starts_with("delay@id-request"); }
  bool losesService() const { return mCell.table == "window: services"; }

  // To where nothing more happens by itself.
  void updateUntilItStands() {
    startProgramAt(mProgram);
    startUpdate("Office");
    if (!isSending()) expectLocked();
    if (mCell.verdict == Verdict::Updated) {
      return mPrinter->waitFor(isAwaiting() ? "fault" : "burning");
    }
    if (!mCell.faults.back().starts_with("slow")) mPrinter->waitFor("fault");
    EXPECT_TRUE(waitForLog(lastBefore()));
    if (mCell.afterwards == Afterwards::Unannounced) mPrinter->waitFor("burn");
  }

  // What the log has of the update when the fault comes ends with this.
  std::string lastBefore() const {
    if (isSending()) return "Async write request for 16777216 bytes.";
    const Lines lines = ofTheUpdate(mCell.log);
    return lines.at(lines.size() - (mCell.fault == WindowFault::Killed ? 1 : 3));
  }

  void chooseQuit() {
    for (const char* name : {"Printer", "Quit"}) {
      const auto item = desktop::findNode(program().pid(), "menu item", name, 40s);
      ASSERT_TRUE(item) << name;
      click(*item);
    }
  }

  // Everything by which somebody could ask for a download behind the progress.
  void askForAnother() {
    for (const char* role : {"push button", "menu item"}) {
      const auto node = desktop::findNode(program().pid(), role, "Download", 0ms);
      if (!node) continue;
      node->activate();
      click(*node);
    }
    press("ctrl+d");
    press("Escape");
  }

  void strike() {
    switch (mCell.fault) {
      case WindowFault::Closed:
        EXPECT_TRUE(desktop().closeWindow(kMainWindow));
        break;
      case WindowFault::QuitByKey:
        waitForActive("Updating Firmware");
        press("ctrl+q");
        break;
      case WindowFault::QuitByMenu:
        chooseQuit();
        break;
      case WindowFault::Terminated:
        program().signal(SIGTERM);
        break;
      case WindowFault::Killed:
        program().signal(SIGKILL);
        break;
      case WindowFault::AnotherDownload:
        askForAnother();
        break;
      case WindowFault::BusEnds:
        standingStill(&privatenetwork::stopBus);
        break;
      case WindowFault::DaemonEnds:
        standingStill([] { privatenetwork::stopDaemon(); });
        break;
      case WindowFault::DaemonRestarts:
        standingStill([] { privatenetwork::stopDaemon(); });
        privatenetwork::startDaemon();
        break;
    }
    if (mCell.verdict == Verdict::Updated) return expectUpdated();
    const bool isAsked = !isSending() && (mCell.fault == WindowFault::Closed ||
                                          mCell.fault == WindowFault::QuitByMenu);
    if (isAsked) answer("Quit anyway");
    EXPECT_EQ(program().waitForExit(40s), mCell.exitStatus) << program().output();
  }

  // So that the update is still there afterwards.
  void standingStill(const std::function<void()>& act) {
    mPrinter->signal(SIGSTOP);
    act();
    EXPECT_EQ(
        timesLogged(isAwaiting() ? "Reading IEEE 1284 device ID..."
                                 : "Firmware download is complete, the printer will restart."),
        0u);
    mPrinter->signal(SIGCONT);
  }

  // The row stays until the printer restarts.
  void expectUpdated() {
    labelWith("Office (10.91.0.1) was updated to version 200 at ");
    EXPECT_TRUE(programRuns());
    const Lines all = log();
    const auto end =
        std::ranges::find(all, "Firmware download is complete, the printer will restart.");
    EXPECT_EQ(std::count(all.begin(), end, "Removing printer with ID=1"), 0);
  }

  // The same program finds another printer, and updates it.
  void updateAnother() {
    const auto attic =
        startPrinter("Attic", printerOptions({}) + Lines{"--announce", "in-process"});
    cell("Attic");
    EXPECT_TRUE(desktop::waitUntil(
        [&] {
          return printersInList() == std::vector<std::string>{"Attic", "Office"};
        },
        40s));
    startUpdate("Attic");
    labelWith("Attic (10.91.0.1) was updated to version 200 at ");
    attic->waitFor("burn");
    EXPECT_TRUE(desktop().closeWindow(kMainWindow));
    EXPECT_EQ(program().waitForExit(40s), 0) << program().output();
  }

  void expectLocked() {
    EXPECT_EQ(mSystem.news(),
              "lock sleep:shutdown:handle-lid-switch | fwupdate | A printer is getting new "
              "firmware. | block");
    EXPECT_EQ(mSession.news(), "screensaver fwupdate | A printer is getting new firmware.");
  }

  // What the computer was kept from, it may do again.
  void expectUnlocked() {
    EXPECT_EQ(mSystem.news(), "unlock sleep:shutdown:handle-lid-switch");
    EXPECT_EQ(mSession.news(), mCell.fault == WindowFault::Killed ? "left without giving back"
                                                                  : "screensaver released 4711");
  }

  // The printer is as it should be, and a program that is started now can update it.
  void expectPrinter() {
    mPrinter->waitFor("closed");
    EXPECT_THAT(mPrinter->entries("closed").at(0).at("position").get<std::string>(),
                StartsWith(mCell.position));
    const bool isNew =
        mCell.afterwards == Afterwards::Updated || mCell.afterwards == Afterwards::Unannounced;
    if (isNew) mPrinter->waitFor("ready", 2);
    writeFirmware(28);
    const Outcome next = runInShell("'" + (mProgram.parent_path() / "fwupdatectl").string() +
                                    "' update --yes --quiet --wait 20 Office </dev/null");
    EXPECT_EQ(next.status, 0) << next.errors;
    mPrinter->readJournal();
    EXPECT_EQ(mPrinter->entries("burn").size(), 1u);
  }

  const WindowCell& mCell;

 private:
  std::filesystem::path mProgram;
  BusServices mSystem{PrivateBus::Kind::System, {"login1"}};
  BusServices mSession{PrivateBus::Kind::Session, {"screensaver", "notifications"}};
  std::unique_ptr<VirtualPrinterProcess> mPrinter;
};

TEST_P(FaultsOfTheWindow, EndAsTheMatrixSays) {
  SCOPED_TRACE(nameOf(mCell));
  updateUntilItStands();
  strike();
  if (!isSending()) expectUnlocked();  // the buses are not spoken to during a send
  EXPECT_EQ(lineByLine(ofTheUpdate(log())), lineByLine(ofTheUpdate(mCell.log)));
  if (losesService()) updateAnother();
  expectPrinter();
}

std::string nameOfCell(const testing::TestParamInfo<std::size_t>& info) {
  std::string name;
  bool isUpper = true;
  const WindowCell& cell = windowCells().at(info.param);
  for (const char c : cell.what + " " + cell.when) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) {
      isUpper = true;
      continue;
    }
    name += isUpper ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
    isUpper = false;
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Cell, FaultsOfTheWindow, testing::Range<std::size_t>(0, 17), nameOfCell);

}  // namespace
