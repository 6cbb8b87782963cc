// Every cell of an update over a kernel's USB, with the whole program but for its pixels on one
// side, and the virtual printer as a process of its own on the other.
#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "Application.h"
#include "AsOtherUser.h"
#include "CellProcess.h"
#include "DownloadFixture.h"
#include "KernelUsbCells.h"
#include "Log.h"
#include "OtherProgram.h"
#include "TemporaryDirectory.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"

namespace {

constexpr char kSerial[] = "VX0042";

// One cell from its beginning to its end: the update that goes wrong, and the one after it.
class KernelCellRun {
 public:
  explicit KernelCellRun(const KernelUsbCell& cell) : mCell(cell) {
    std::ofstream(mResources.path() / "product.brand.bin", std::ios::binary)
        << std::string(cell.firmwareSize - firmware200().size(), 'x') << firmware200();
    // Another user may read it, too.
    std::filesystem::permissions(mResources.path(), std::filesystem::perms(0755));
  }

  void run() {
    const std::size_t descriptors = openDescriptors();
    {
      Application application(mResources.path().string(), nullptr, {.usb = &makeUsb});
      EXPECT_EQ(application.run([&] { update(application); }), 0);
      if (mCell.verdict == Verdict::Quits) expectLog(application);
      EXPECT_EQ(application.held().substr(application.held().find("watches")),
                "watches, 0 timers, 0 updates");
    }
    if (mCell.verdict == Verdict::Quits) {
      // At once: nobody is left who could wait for it. A printer with new firmware restarts.
      const std::string driver = kernelDriver(kSerial);
      EXPECT_TRUE(driver == "usblp" || (driver.empty() && hasNewFirmware())) << driver;
      updateAnew();
    }
    await([&] { return openDescriptors() == descriptors; }, "a descriptor is left");
    EXPECT_EQ(mPrinter->count("violation"), 0u);
  }

 private:
  static std::unique_ptr<platform::LibusbRegistry> makeUsb(platform::RunLoop& runLoop) {
    return platform::makeLibusbRegistry(
        runLoop, [](const std::string& entry) { Log<3>() << entry << std::flush; },
        std::chrono::minutes(1));
  }

  void plugIn(bool isFaulty) {
    mPrinter.reset();
    std::vector<std::string> options =
        printerOptions(isFaulty ? mCell.faults : std::vector<std::string>{});
    options.insert(options.end(),
                   {"--serial", kSerial, "--return-seconds", "1", "--hang-up-seconds", "0.2"});
    options.insert(options.end(), {"--burn-seconds", std::to_string(mCell.burnSeconds)});
    // Where it comes back by itself, it has no fault any more.
    if (!mCell.needsAnotherPrinter()) {
      options.insert(options.end(), {"--faulty-conversations", "1"});
    }
    mPrinter = std::make_unique<UsbPrinterProcess>(options);
  }

  // Of a printer that returns, the newest row. No time passes for the program before the system
  // has configured the device: it would list it without its interfaces then, and anew with them.
  void select(Application& application) {
    if (mCell.verdict != Verdict::NotStarted) awaitConfiguration(application);
    ASSERT_TRUE(application.liveUntil([&] { return application.select(mRow); }))
        << joined(application.log()) << journal();
  }

  void awaitConfiguration(Application& application) const {
    const bool isConfigured = application.runUntil([this] {
      const std::filesystem::path device = usbDevice(kSerial);
      return !device.empty() && (!mHasDriver || hasOtherShape() || isPrinter());
    });
    ASSERT_TRUE(isConfigured) << journal();
  }

  static bool isPrinter() { return kernelDriver(kSerial) == "usblp"; }
  // Without the interface that the kernel's driver is for.
  bool hasOtherShape() const {
    return mRow == 1 && !mCell.faults.empty() && mCell.faults[0] == "no-printer-interface";
  }

  void update(Application& application) {
    std::optional<AuthorizingNobody> nobody;
    mHasDriver = mCell.fault != KernelFault::ConfiguredLate;
    if (!mHasDriver) nobody.emplace();
    plugIn(true);
    select(application);
    nobody.reset();
    if (mCell.fault == KernelFault::ClaimedMeanwhile) updateBefore(application);
    updateBadly(application);
    if (mCell.verdict == Verdict::Quits) return;
    expectOutcome(application);
    expectPrinter();
    updateWell(application);
  }

  std::string journal() const {
    std::string text;
    for (const nlohmann::json& entry : mPrinter->journal()) text += entry.dump() + "\n";
    return text;
  }

  // An update that finds the printer up to date, and keeps the interface open.
  void updateBefore(Application& application) {
    mPrinter.reset();
    mPrinter = std::make_unique<UsbPrinterProcess>(std::vector<std::string>{
        "--serial", kSerial, "--device-id", "MDL:KX350T;LIC:QT725013;FWVER:200;"});
    ++mRow;
    select(application);
    download(application);
    awaitOutcome(application, "DlUd");
    EXPECT_TRUE(application.closeAlert());
    awaitDriver(application);
    select(application);
  }

  void updateBadly(Application& application) {
    switch (mCell.fault) {
      case KernelFault::Pulled:
        if (mCell.step == 0) {
          mPrinter->stop();
          EXPECT_TRUE(application.liveUntil([&] { return !application.select(mRow); }));
          EXPECT_FALSE(application.download());
          return;
        }
        download(application);
        awaitLog(application, mCell.log.size() - 2);
        awaitEvent("fault");
        mPrinter->stop();
        break;
      case KernelFault::PulledUnnoticed:
        mPrinter->stop();
        download(application);
        break;
      case KernelFault::Quit:
        download(application);
        awaitStep(application);
        awaitEvent(mCell.afterwards == Afterwards::Unannounced ? "burn" : "fault");
        EXPECT_EQ(kernelDriver(kSerial), "usbfs");
        EXPECT_TRUE(application.chooseQuit());
        return;
      case KernelFault::ClaimedElsewhere:
      case KernelFault::ClaimedMeanwhile: {
        mHasDriver = false;  // the other program has taken it away
        const OtherProcess other("ipp-usb", kSerial, 1);
        download(application);
        awaitOutcome(application, "DlNo");
        return;
      }
      case KernelFault::NotPermitted: {
        const AsOtherUser nobody;
        download(application);
        awaitOutcome(application, "DlNo");
        return;
      }
      default:
        download(application);
        if (!mCell.event.empty()) {
          awaitStep(application);
          awaitEvent(mCell.event);
        }
        break;
    }
    awaitOutcome(application, mCell.verdict == Verdict::Updated ? "DlOk" : "DlNo");
  }

  static void download(Application& application) { EXPECT_TRUE(application.download()); }

  static void awaitLog(Application& application, std::size_t lines) {
    EXPECT_TRUE(application.liveUntil([&] { return application.log().size() >= lines; }))
        << joined(application.log());
  }

  // Each of the eight steps logs one such entry.
  void awaitStep(Application& application) {
    EXPECT_TRUE(application.liveUntil([&] {
      const Lines log = application.log();
      return std::ranges::count_if(log, [](const std::string& line) {
               return line.starts_with("5 Async ");
             }) >= static_cast<std::ptrdiff_t>(mCell.step);
    })) << joined(application.log());
  }

  // The program stands still meanwhile.
  void awaitEvent(const std::string& event, std::size_t count = 1) {
    await([&] { return mPrinter->count(event) >= count; }, event + " is missing");
  }

  static void await(const std::function<bool()>& done, const std::string& otherwise) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline) << otherwise;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  void awaitOutcome(Application& application, const std::string& outcome) {
    EXPECT_TRUE(application.liveUntil([&] { return !application.outcome().empty(); },
                                      std::chrono::seconds(60)))
        << joined(application.log());
    EXPECT_EQ(application.outcome(), outcome) << journal();
  }

  void awaitDriver(Application& application) {
    EXPECT_TRUE(application.liveUntil([] { return kernelDriver(kSerial) == "usblp"; }))
        << kernelDriver(kSerial);
  }

  void expectOutcome(Application& application) {
    if (mCell.verdict == Verdict::Failed) {
      expectLog(application);
      EXPECT_EQ(application.onScreen(), "[PrinterSelectWindow] [ProgressSheet] FailedSheet");
      EXPECT_TRUE(application.closeAlert());
    } else if (mCell.verdict == Verdict::Updated) {
      expectLog(application);
    }
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
  }

  void expectLog(Application& application) {
    EXPECT_EQ(joined(withoutChance(application.log())), joined(mCell.log));
  }

  // What it had received when its first conversation ended.
  void expectPrinter() {
    if (mCell.position.empty()) {
      if (mCell.fault != KernelFault::ClaimedMeanwhile) {
        EXPECT_THAT(mPrinter->receivedMessages(), testing::IsEmpty());
      }
      return;
    }
    if (mCell.needsAnotherPrinter()) mPrinter->stop();
    awaitEvent("closed");
    std::string position;
    for (const nlohmann::json& entry : mPrinter->journal()) {
      if (entry.at("event") != "closed" || entry.at("connection") != 1) continue;
      position = entry.at("position").get<std::string>();
    }
    EXPECT_THAT(position, testing::StartsWith(mCell.position));
  }

  bool hasNewFirmware() const {
    return mCell.afterwards == Afterwards::Updated || mCell.afterwards == Afterwards::Unannounced;
  }

  bool isPluggedInAnew() const {
    return mCell.needsAnotherPrinter() || hasNewFirmware() ||
           mCell.fault == KernelFault::ConfiguredLate;
  }

  // By the same program, where it has not ended, and without a word at error level.
  void updateWell(Application& application) {
    const bool isUpToDate = hasNewFirmware() || mCell.fault == KernelFault::ClaimedMeanwhile;
    if (mCell.needsAnotherPrinter()) plugIn(false);
    if (hasNewFirmware()) awaitEvent("plugged", 2);
    if (mCell.fault == KernelFault::ConfiguredLate) {
      setUsbAttribute(usbDevice(kSerial) / "authorized", "1");
      mHasDriver = true;
    }
    if (isPluggedInAnew()) ++mRow;
    select(application);
    shrinkFirmware();
    download(application);
    awaitOutcome(application, isUpToDate ? "DlUd" : "DlOk");
    EXPECT_THAT(application.log(), testing::Not(testing::Contains(testing::StartsWith("3 "))));
    EXPECT_EQ(application.closeAlert(), isUpToDate);
    if (isUpToDate && mHasDriver) awaitDriver(application);
  }

  // To what the bus carries in time on any machine.
  void shrinkFirmware() {
    std::ofstream(mResources.path() / "product.brand.bin", std::ios::binary) << firmware200();
  }

  // The program is started again.
  void updateAnew() {
    if (hasNewFirmware()) {
      awaitEvent("plugged", 2);
    } else {
      plugIn(false);
    }
    Application application(mResources.path().string(), nullptr, {.usb = &makeUsb});
    EXPECT_EQ(application.run([&] {
      mRow = 1;
      select(application);
      download(application);
      awaitOutcome(application, hasNewFirmware() ? "DlUd" : "DlOk");
    }),
              0);
  }

  const KernelUsbCell& mCell;
  TemporaryDirectory mResources;
  std::unique_ptr<UsbPrinterProcess> mPrinter;
  unsigned mRow = 1;
  bool mHasDriver = true;  // the kernel's, for printers
};

void runKernelCells(const std::string& table) {
  std::size_t count = 0;
  for (const KernelUsbCell& cell : kernelUsbCells()) {
    if (cell.table != "kernel: " + table) continue;
    SCOPED_TRACE(nameOf(cell));
    KernelCellRun(cell).run();
    ++count;
  }
  EXPECT_NE(count, 0u);
}

TEST(FaultsOnAKernelsUsb, PrinterIsUnplugged) { runKernelCells("unplugged"); }
TEST(FaultsOnAKernelsUsb, PipesStall) { runKernelCells("stalls"); }
TEST(FaultsOnAKernelsUsb, NothingHappensInTime) { runKernelCells("no answer in time"); }
TEST(FaultsOnAKernelsUsb, PrinterIsNotOpened) { runKernelCells("not opened"); }
TEST(FaultsOnAKernelsUsb, UserQuits) { runKernelCells("quit"); }

}  // namespace
