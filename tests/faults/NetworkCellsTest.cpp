// Every cell of an update over TCP, with the whole program on one side and the virtual printer on
// the other.
#include <gmock/gmock.h>

#include <fstream>

#include "Application.h"
#include "CellProcess.h"
#include "DeafAddress.h"
#include "DownloadFixture.h"
#include "NetworkCellUpdate.h"
#include "NetworkCells.h"
#include "NoDescriptors.h"
#include "TemporaryDirectory.h"
#include "VirtualPrinterProcess.h"
#include "printerLock.h"

namespace {

// One cell from its beginning to its end: the update that goes wrong, and the one after it.
class CellRun {
 public:
  explicit CellRun(const NetworkCell& cell) : mCell(cell) {
    for (const char* name : {"product.brand.bin", "product.tarn.bin"}) {
      std::ofstream(mResources.path() / name, std::ios::binary)
          << std::string(cell.firmwareSize - firmware200().size(), 'x') << firmware200();
    }
  }

  void run() {
    startPrinter();
    const std::uint16_t port = mPrinter->port();
    const std::size_t descriptors = openDescriptors();
    if (mCell.verdict == Verdict::Aborts) {
      abortInAnotherProcess();
    } else {
      Application application(resources());
      EXPECT_EQ(application.run([&] { updateBadly(application); }), 0);
      expectLog(application.log());
      EXPECT_THAT(application.usb().problems(), testing::IsEmpty());
      EXPECT_EQ(application.held(), kNothing);
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_FALSE(isLocked(port));
    if (isWaiting() || mCell.verdict == Verdict::Aborts) updateAnew();
    expectPrinter();
  }

 private:
  inline static const std::string kNothing = "0 watches, 0 timers, 0 updates";

  bool isWaiting() const { return mCell.verdict == Verdict::Waits; }
  std::string resources() const { return mResources.path().string(); }

  // Its faults are over after one conversation, unless it does not get over them.
  bool mustBeReplaced() const {
    const std::string fault = mCell.faults.empty() ? "" : mCell.faults.back();
    const bool isUnfit = !mCell.options.empty() && !hasNewFirmware();
    return isUnfit || fault.starts_with("hang") || fault == "refuse";
  }

  void startPrinter() {
    std::vector<std::string> options = printerOptions(mCell.faults);
    options.insert(options.end(), {"--faulty-conversations", "1"});
    options.insert(options.end(), mCell.options.begin(), mCell.options.end());
    mPrinter = std::make_unique<VirtualPrinterProcess>(options);
  }

  void updateBadly(Application& application) {
    std::optional<DeafAddress> nobody;
    if (mCell.surrounding == Surrounding::Unreachable) nobody.emplace();
    const std::uint16_t port = nobody ? nobody->port() : mPrinter->port();
    application.announce("Office", port);
    const std::string before = application.held();
    const std::size_t descriptors = openDescriptors();
    ASSERT_TRUE(application.select(1));
    if (mCell.verdict == Verdict::NotStarted) {
      withdrawBeforeTheStart(application);
      return;
    }
    download(application);
    if (mCell.surrounding == Surrounding::Withdrawn) withdraw(application);
    holdUntilFault(mCell, application, *mPrinter);
    if (isWaiting()) {
      EXPECT_TRUE(isLocked(port));
      return quitWhileWaiting(mCell, application);
    }
    expectEnd(mCell, application);
    EXPECT_FALSE(isLocked(port));
    EXPECT_EQ(application.held(), before);
    EXPECT_EQ(openDescriptors(), descriptors);
    mLog = application.log();
    updateWell(application);
  }

  void download(Application& application) {
    if (mCell.surrounding != Surrounding::NoDescriptors) {
      EXPECT_TRUE(application.download());
      return;
    }
    const NoDescriptors none;
    EXPECT_TRUE(application.download());
  }

  void withdrawBeforeTheStart(Application& application) {
    if (mCell.surrounding == Surrounding::WithdrawnAsked) {
      EXPECT_TRUE(application.pressDownload());
      application.withdraw("Office");
      application.settle();
      EXPECT_TRUE(application.pressYes());
    } else {
      application.withdraw("Office");
      application.settle();
      EXPECT_FALSE(application.pressDownload());
    }
    EXPECT_EQ(application.outcome(), "");
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
    mLog = application.log();
    updateWell(application);
  }

  // The announcement goes as soon as so many messages have begun.
  void withdraw(Application& application) {
    EXPECT_TRUE(application.runUntil([&] {
      const Lines log = application.log();
      return std::ranges::count_if(log, [](const std::string& line) {
               return line.starts_with("5 Async ");
             }) == static_cast<std::ptrdiff_t>(mCell.step);
    }));
    application.withdraw("Office");
    application.settle();
  }

  void expectLog(const Lines& log) {
    EXPECT_EQ(joined(seenLog(mCell, mLog.empty() ? log : mLog)), joined(mCell.log));
  }

  void abortInAnotherProcess() {
    expectAbort(
        mCell, resources(),
        [this](Application& application, const std::function<void()>& begin) {
          application.announce("Office", mPrinter->port());
          application.select(1);
          begin();
          application.download();
          application.runUntil([&] { return !application.outcome().empty(); });
        },
        &withoutArrivals);
    mPrinter->waitFor("closed");
  }

  // The program is started again.
  void updateAnew() {
    const std::size_t descriptors = openDescriptors();
    {
      Application application(resources());
      EXPECT_EQ(application.run([&] {
        application.announce("Office", mPrinter->port());
        updateWell(application);
      }),
                0);
      EXPECT_EQ(application.held(), kNothing);
    }
    EXPECT_EQ(openDescriptors(), descriptors);
  }

  bool hasNewFirmware() const {
    return mCell.afterwards == Afterwards::Updated || mCell.afterwards == Afterwards::Unannounced;
  }

  // The printer is as it should be, and can be updated; or says that it has been.
  void updateWell(Application& application) {
    unsigned row = 1;
    if (hasNewFirmware()) mPrinter->waitFor("ready", 2);
    if (mustBeReplaced()) {
      expectPrinter();
      mPrinter = std::make_unique<VirtualPrinterProcess>(printerOptions({}));
      application.announce("Another printer", mPrinter->port());
      row = 2;
    }
    if (mCell.table == "withdrawn") {
      application.announce("Office", mPrinter->port());
      row = 2;
    }
    ASSERT_TRUE(application.select(row) && application.download());
    EXPECT_TRUE(application.runUntil([&] { return !application.outcome().empty(); }));
    EXPECT_EQ(application.outcome(), hasNewFirmware() ? "DlUd" : "DlOk");
    const auto isError = [](const std::string& line) { return line.starts_with("3 "); };
    EXPECT_FALSE(std::ranges::any_of(application.log(), isError));
  }

  // What it had received when its first conversation ended, and that it burned only if it should.
  void expectPrinter() {
    if (mIsChecked) return;
    mIsChecked = true;
    const int status = mPrinter->stop();
    EXPECT_EQ(status, 0);
    const bool wasReached = mCell.surrounding == Surrounding::Sound || !mCell.position.empty();
    if (!wasReached) return;  // its first conversation is the one after
    std::string position;
    for (const auto& entry : mPrinter->entries("closed")) {
      if (entry.at("connection") == 1) position = entry.at("position").get<std::string>();
    }
    EXPECT_EQ(position, mCell.position);
    Lines received;
    for (const auto& entry : mPrinter->entries("received")) {
      if (entry.at("connection") == 1) received.push_back(entry.at("message").get<std::string>());
    }
    EXPECT_EQ(received, messagesBefore(mCell.position));
  }

  static Lines messagesBefore(const std::string& position) {
    const Lines all{"status-off", "id-request", "burn-header", "image", "uel"};
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (position.starts_with("in " + all[i]) || position == "before " + all[i]) {
        return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(i)};
      }
      if (position == "after " + all[i]) {
        return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(i) + 1};
      }
    }
    return {};
  }

  const NetworkCell& mCell;
  TemporaryDirectory mResources;
  std::unique_ptr<VirtualPrinterProcess> mPrinter;
  Lines mLog;  // of the update that goes wrong, when another one followed
  bool mIsChecked = false;
};

void runCells(const std::string& table) {
  std::size_t count = 0;
  for (const NetworkCell& cell : networkCells()) {
    if (cell.table != table) continue;
    SCOPED_TRACE(nameOf(cell));
    CellRun(cell).run();
    ++count;
  }
  EXPECT_NE(count, 0u);
}

TEST(FaultsOnTheNetwork, PrinterRefusesTheConnection) { runCells("refuses"); }
TEST(FaultsOnTheNetwork, NoConnectionStands) { runCells("no connection"); }
TEST(FaultsOnTheNetwork, AnnouncementGoes) { runCells("withdrawn"); }
TEST(FaultsOnTheNetwork, PrinterClosesTheConnection) { runCells("closes"); }
TEST(FaultsOnTheNetwork, PrinterBreaksTheConnection) { runCells("breaks"); }
TEST(FaultsOnTheNetwork, PrinterIsSilent) { runCells("is silent"); }
TEST(FaultsOnTheNetwork, PrinterFreezes) { runCells("freezes"); }
TEST(FaultsOnTheNetwork, PrinterEndsItsSide) { runCells("ends its side"); }
TEST(FaultsOnTheNetwork, AnswersComeInPieces) { runCells("pieces"); }
TEST(FaultsOnTheNetwork, AnswersAreTooLong) { runCells("surplus"); }
// Takes the five seconds that a send may take.
TEST(FaultsOnTheNetwork, FirmwareIsLarge) { runCells("large firmware"); }
TEST(FaultsOnTheNetworkDeathTest, ResponseIsWrong) { runCells("response"); }
TEST(FaultsOnTheNetwork, AnswerToTheFirmwareIsWrong) { runCells("burn reply"); }
TEST(FaultsOnTheNetworkDeathTest, DeviceIdIsUnusual) { runCells("device ID"); }

}  // namespace
