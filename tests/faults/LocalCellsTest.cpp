// Every cell whose fault is on the computer, with the whole program and a printer on a bus of
// calls.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "Application.h"
#include "BusPrinter.h"
#include "CellProcess.h"
#include "DownloadFixture.h"
#include "LocalCells.h"
#include "NoDescriptors.h"
#include "TemporaryDirectory.h"
#include "platform/posix/PosixFiles.h"

namespace {

// The real files, until an operation is made to fail.
class FilesThatFail : public platform::Files {
 public:
  void fail(LocalFault fault, platform::OSStatus status) {
    mFault = fault;
    mStatus = status;
  }

  platform::OSStatus checkDirectory(const std::filesystem::path& directory) override {
    return mFiles->checkDirectory(directory);
  }

  platform::OSStatus makeReference(const std::filesystem::path& directory,
                                   const std::u16string& name,
                                   std::filesystem::path& file) override {
    return mFiles->makeReference(directory, name, file);
  }

  platform::OSStatus dataSize(const std::filesystem::path& file, std::uint64_t& size) override {
    return mFault == LocalFault::SizeFails ? mStatus : mFiles->dataSize(file, size);
  }

  platform::WholeRead readWhole(const std::filesystem::path& file, std::size_t size,
                                platform::FileBytes& bytes) override {
    using Step = platform::WholeRead::Step;
    if (mFault == LocalFault::OpenFails) return {Step::Open, mStatus};
    if (mFault == LocalFault::ReadFails) {
      bytes = platform::FileBytes(std::vector<char>(size));
      return {Step::Read, mStatus, size / 2};
    }
    if (mFault == LocalFault::Truncated) std::filesystem::resize_file(file, size / 2);
    return mFiles->readWhole(file, size, bytes);
  }

 private:
  std::unique_ptr<platform::Files> mFiles = platform::makePosixFiles();
  LocalFault mFault = LocalFault::Missing;
  platform::OSStatus mStatus = 0;
};

// One cell from its beginning to its end: the update that goes wrong, and the one after it.
class LocalCellRun {
 public:
  explicit LocalCellRun(const LocalCell& cell) : mCell(cell) {
    std::filesystem::create_directory(resources());
    install(firmware200());
  }

  void run() {
    const std::size_t descriptors = openDescriptors();
    {
      Application application(resources().string(), &mFiles);
      BusPrinter printer(application);
      EXPECT_EQ(application.run([&] { update(application, printer); }), 0);
      if (mCell.verdict == Verdict::Quits) expectLog(application, printer);
      EXPECT_THAT(application.usb().problems(), testing::IsEmpty());
      EXPECT_FALSE(application.usb().isOpen(application.usb().interfaceOf(printer.service())));
      EXPECT_EQ(application.held(), "0 watches, 0 timers, 0 updates");
    }
    if (mCell.verdict == Verdict::Quits) updateAnew();
    EXPECT_EQ(openDescriptors(), descriptors);
  }

 private:
  std::filesystem::path resources() const { return mDirectory.path() / "resources"; }
  std::filesystem::path file() const { return resources() / "product.brand.bin"; }

  void install(const std::string& bytes) { std::ofstream(file(), std::ios::binary) << bytes; }

  void update(Application& application, BusPrinter& printer) {
    printer.plugIn(fakePrinter());
    ASSERT_TRUE(application.select(1));
    const std::string before = application.held();
    damage(application);
    ASSERT_TRUE(application.download());
    if (mCell.verdict == Verdict::Quits) {
      EXPECT_TRUE(printer.serveUntil(mCell.step));
      EXPECT_TRUE(application.chooseQuit());
      EXPECT_EQ(application.outcome(), "");
      return;
    }
    serve(application, printer);
    expectLog(application, printer);
    expectEnd(application);
    EXPECT_EQ(application.held(), before);
    repair(application);
    updateWell(application, printer);
  }

  void serve(Application& application, BusPrinter& printer) {
    if (mCell.fault == LocalFault::AnotherDownload) {
      EXPECT_TRUE(printer.serveUntil(mCell.step));
      EXPECT_FALSE(application.pressDownload());
      EXPECT_FALSE(application.chooseDownload());
    }
    if (mCell.fault == LocalFault::NoDescriptors) {
      EXPECT_TRUE(printer.serveUntil(4));
      const NoDescriptors none;
      printer.serveAll();
    }
    printer.serveAll();
  }

  void damage(Application& application) {
    switch (mCell.fault) {
      case LocalFault::Missing:
        std::filesystem::remove(file());
        break;
      case LocalFault::Directory:
        std::filesystem::remove(file());
        std::filesystem::create_directory(file());
        std::filesystem::create_directory(file() / "inside");
        break;
      case LocalFault::Pipe:
        std::filesystem::remove(file());
        EXPECT_EQ(mkfifo(file().c_str(), 0600), 0);
        break;
      case LocalFault::DanglingLink:
        std::filesystem::remove(file());
        std::filesystem::create_symlink("nowhere", file());
        break;
      case LocalFault::Bytes:
        install(mCell.bytes);
        break;
      case LocalFault::NoResources:
        std::filesystem::remove_all(resources());
        break;
      case LocalFault::UnknownResources:
        application.bundle().setResourcesDirectory(std::nullopt);
        break;
      case LocalFault::NoBundle:
        application.bundle().remove();
        break;
      default:
        mFiles.fail(mCell.fault, mCell.status);
        break;
    }
  }

  void repair(Application& application) {
    std::filesystem::remove_all(resources());
    std::filesystem::create_directory(resources());
    install(firmware200());
    application.bundle().bringBack();
    application.bundle().setResourcesDirectory(resources());
    mFiles.fail(LocalFault::Missing, 0);
  }

  void expectLog(Application& application, BusPrinter& printer) {
    EXPECT_EQ(joined(application.log()), joined(mCell.log));
    EXPECT_EQ(printer.position(), mCell.position);
  }

  void expectEnd(Application& application) {
    const bool isFailed = mCell.verdict == Verdict::Failed;
    const bool isUpdated = mCell.verdict == Verdict::Updated;
    EXPECT_EQ(application.outcome(), isUpdated ? "DlOk" : isFailed ? "DlNo" : "DlUd");
    EXPECT_EQ(application.onScreen(), isUpdated ? "PrinterSelectWindow"
                                      : isFailed
                                          ? "[PrinterSelectWindow] [ProgressSheet] FailedSheet"
                                          : "[PrinterSelectWindow] [ProgressSheet] UpToDateSheet");
    EXPECT_EQ(application.closeAlert(), !isUpdated);
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
  }

  void updateWell(Application& application, BusPrinter& printer) {
    const bool hasNew = printer.version() == "200";
    EXPECT_EQ(hasNew, mCell.afterwards == Afterwards::Updated);
    ASSERT_TRUE(application.select(1) && application.download());
    printer.serveAll();
    EXPECT_EQ(application.outcome(), hasNew ? "DlUd" : "DlOk");
    EXPECT_EQ(printer.version(), "200");
  }

  // The program is started again, with the printer plugged in anew.
  void updateAnew() {
    Application application(resources().string());
    BusPrinter printer(application);
    EXPECT_EQ(application.run([&] {
      printer.plugIn(fakePrinter());
      updateWellFromTheStart(application, printer);
    }),
              0);
  }

  static void updateWellFromTheStart(Application& application, BusPrinter& printer) {
    ASSERT_TRUE(application.select(1) && application.download());
    printer.serveAll();
    EXPECT_EQ(application.outcome(), "DlOk");
  }

  const LocalCell& mCell;
  TemporaryDirectory mDirectory;
  FilesThatFail mFiles;
};

void runLocalCells(const std::string& table) {
  std::size_t count = 0;
  for (const LocalCell& cell : localCells()) {
    if (cell.table != table) continue;
    SCOPED_TRACE(nameOf(cell));
    LocalCellRun(cell).run();
    ++count;
  }
  EXPECT_NE(count, 0u);
}

TEST(FaultsOnTheComputer, FirmwareFileIsWrong) { runLocalCells("firmware file"); }
TEST(FaultsOnTheComputer, UserQuits) { runLocalCells("quit"); }
TEST(FaultsOnTheComputer, UserAsksForAnotherDownload) { runLocalCells("second download"); }

}  // namespace
