// Many downloads in one process, to printers that fail in every way in which a printer on the
// network does: each ends as its cell of the fault matrix says, and leaves nothing behind.
#include <gmock/gmock.h>

#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Application.h"
#include "CellProcess.h"
#include "Course.h"
#include "DownloadFixture.h"
#include "NetworkCellUpdate.h"
#include "NetworkCells.h"
#include "TemporaryDirectory.h"
#include "VirtualPrinterProcess.h"

namespace {

// In the short form each of so many cells stands for those that follow it.
constexpr std::size_t kShortForm = 400;
constexpr std::size_t kStrideOfShortForm = 9;

// In bytes. A download may add nothing but noise. What was logged of an announcement stays.
constexpr double kNothing = 10;
constexpr double kKeptOfAnArrival = 160;

// Those that need nothing but a printer that gets over them, and no time.
bool isRepeatable(const NetworkCell& cell) {
  return cell.surrounding == Surrounding::Sound && cell.table != "freezes" &&
         cell.table != "large firmware" && cell.verdict != Verdict::Aborts;
}

// The printer of a cell. It makes its mistake in every conversation, and forgets what it has
// burned.
class CellPrinter {
 public:
  explicit CellPrinter(const NetworkCell& cell) : mCell(cell), mProcess(optionsFor(cell)) {
    mProcess.forgetJournal();
  }

  const NetworkCell& cell() const { return mCell; }
  VirtualPrinterProcess& process() { return mProcess; }

  // To the end of a conversation: what it has received and done, and that it is ready for the next.
  void expectPosition() {
    if (mCell.table != "refuses") {
      mProcess.waitFor("closed");
      EXPECT_EQ(mProcess.entries("closed").front().at("position"), mCell.position);
    }
    if (hasBurned()) mProcess.waitFor("ready");
    EXPECT_EQ(mProcess.entries("burn").size(), hasBurned() || isRefusing() ? 1u : 0u);
    mProcess.forgetJournal();
  }

 private:
  static std::vector<std::string> optionsFor(const NetworkCell& cell) {
    std::vector<std::string> options = printerOptions(cell.faults);
    options.insert(options.end(), cell.options.begin(), cell.options.end());
    options.insert(options.end(), {"--fault", "forget-burn", "--burn-seconds", "0.005",
                                   "--return-seconds", "0.001"});
    return options;
  }

  bool hasBurned() const {
    return mCell.afterwards == Afterwards::Updated || mCell.afterwards == Afterwards::Unannounced;
  }

  // It has all of the firmware and says that something is wrong with it.
  bool isRefusing() const { return mCell.afterwards == Afterwards::Refusing; }

  const NetworkCell& mCell;
  VirtualPrinterProcess mProcess;
};

class DownloadsTest : public testing::Test {
 protected:
  DownloadsTest() {
    for (const char* name : {"product.brand.bin", "product.tarn.bin"}) {
      std::ofstream(mResources.path() / name, std::ios::binary) << firmware200();
    }
  }

  void startPrinters(bool waiting, std::size_t downloads) {
    const std::size_t stride = downloads > kShortForm ? 1 : kStrideOfShortForm;
    std::size_t number = 0;
    for (const NetworkCell& cell : networkCells()) {
      if (!isRepeatable(cell) || (cell.verdict == Verdict::Waits) != waiting) continue;
      if (number++ % stride == 0) mPrinters.push_back(std::make_unique<CellPrinter>(cell));
    }
  }

  // All of them have the name that is in the logs of their cells.
  static void announce(Application& application, CellPrinter& printer) {
    application.announce("Office", printer.process().port());
  }

  // Up to the moment in which the printer has done what it does wrong.
  void beginDownload(Application& application, CellPrinter& printer, unsigned row) {
    ASSERT_TRUE(application.select(row));
    ASSERT_TRUE(application.download());
    holdUntilFault(printer.cell(), application, printer.process());
  }

  void expectLog(const NetworkCell& cell, const Application& application) {
    EXPECT_EQ(joined(seenLog(cell, application.log())), joined(cell.log));
  }

  std::string resources() const { return mResources.path().string(); }

  TemporaryDirectory mResources;
  std::vector<std::unique_ptr<CellPrinter>> mPrinters;
};

TEST_F(DownloadsTest, OneWindowUpdatesOneAfterTheOther) {
  const std::size_t downloads = eventsWanted(kShortForm);
  startPrinters(false, downloads);
  Application application(resources());
  EXPECT_EQ(application.run([&] {
    for (const auto& printer : mPrinters) announce(application, *printer);
    const std::string before = application.held();
    Course course("downloads", "Downloads in one window", "downloads", downloads);
    for (std::size_t i = 0; i < downloads && !HasFailure(); ++i) {
      CellPrinter& printer = *mPrinters[i % mPrinters.size()];
      SCOPED_TRACE(nameOf(printer.cell()));
      beginDownload(application, printer, static_cast<unsigned>(i % mPrinters.size() + 1));
      expectEnd(printer.cell(), application);
      expectLog(printer.cell(), application);
      EXPECT_EQ(application.held(), before);
      printer.expectPosition();
      course.count();
    }
    course.expectToAdd(kNothing);
  }),
            0);
}

// A silent network printer is waited for until the user quits.
TEST_F(DownloadsTest, ProgramIsQuitAndStartedAnewInOneProcess) {
  const std::size_t downloads = eventsWanted(kShortForm);
  startPrinters(true, downloads);
  Course course("quits", "Downloads that are quit", "downloads", downloads);
  for (std::size_t i = 0; i < downloads && !HasFailure(); ++i) {
    CellPrinter& printer = *mPrinters[i % mPrinters.size()];
    SCOPED_TRACE(nameOf(printer.cell()));
    {
      Application application(resources());
      EXPECT_EQ(application.run([&] {
        announce(application, printer);
        beginDownload(application, printer, 1);
        quitWhileWaiting(printer.cell(), application);
      }),
                0);
      expectLog(printer.cell(), application);
      EXPECT_EQ(application.held(), "0 watches, 0 timers, 0 updates");
    }
    printer.expectPosition();
    course.count();
  }
  course.expectToAdd(kNothing + kKeptOfAnArrival);
}

}  // namespace
