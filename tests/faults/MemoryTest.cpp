// An update in which one allocation fails, for each allocation that it makes: those of the program,
// and those of the surfaces below it, which may fail as well.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>

#include "Application.h"
#include "BusPrinter.h"
#include "BusServices.h"
#include "CellProcess.h"
#include "DownloadFixture.h"
#include "PrivateBus.h"
#include "TemporaryDirectory.h"
#include "WatchedMemory.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"
#include "platform/dbus/PowerLock.h"

namespace {

// The host's log takes an entry without memory of its own; its double keeps it.
class LogWithMemory : public platform::SystemLog {
 public:
  explicit LogWithMemory(platform::SystemLog& log) : mLog(log) {}

  void open(const char*, int, int) override {}
  void write(int priority, const char* text) override {
    const AllocationsMayFail inTheDouble(false);
    mLog.write(priority, text);
  }
  void close() override {}

 private:
  platform::SystemLog& mLog;
};

class UpdateWithoutMemory {
 public:
  explicit UpdateWithoutMemory(std::size_t allocation) : mAllocation(allocation) {
    std::ofstream(mResources.path() / "product.brand.bin", std::ios::binary) << firmware200();
  }

  // How it ended: "updated", "failed", "waits", "ends with status 1"; empty when the update makes
  // no such allocation.
  std::string run() {
    const std::size_t descriptors = openDescriptors();
    {
      Application application(mResources.path().string(), nullptr, parts());
      const int status = application.run([&] { update(application); });
      if (status != 0) mEnd = "ends with status " + std::to_string(status);
      if (mHasFailed) expectError(application.log());
      EXPECT_THAT(application.usb().problems(), testing::IsEmpty());
      EXPECT_EQ(application.held(), "0 watches, 0 timers, 0 updates");
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    if (mEnd == "waits" || mEnd.starts_with("ends")) updateAnew();
    return mHasFailed ? mEnd : "";
  }

 private:
  static ApplicationParts parts() {
    ApplicationParts parts;
    parts.powerLock = [](platform::RunLoop& runLoop) {
      return platform::makePowerLock(runLoop, {"fwupdate", "A printer is getting new firmware."},
                                     {});
    };
    return parts;
  }

  // What failed has an entry, unless it did no harm.
  void expectError(const std::vector<std::string>& log) const {
    if (mEnd == "ends with status 1") {
      EXPECT_EQ(log.back(), "3 Allocation error occurred: std::bad_alloc");
    } else if (mEnd != "updated") {
      EXPECT_TRUE(mHasLoggedError);
    }
  }

  void update(Application& application) {
    BusPrinter printer(application);
    printer.plugIn(fakePrinter());
    ASSERT_TRUE(application.select(1));
    const AllocationsMayFail inTheTest(false);
    application.setAround([](const Application::Body& body) {
      const AllocationsMayFail inTheProgram(true);
      body();
    });
    LogWithMemory log(*platform::current().systemLog);
    platform::Platform surfaces = platform::current();
    surfaces.systemLog = &log;
    const platform::PlatformScope scope(surfaces);
    {
      const FailingAllocation failing(mAllocation);
      const Noted noted(failing, mHasFailed);
      const std::size_t pipes = openPipes();
      application.download();
      waitUntilAwake(application, failing, pipes);
      printer.serveAll();
    }
    const std::string outcome = application.outcome();
    const std::vector<std::string> entries = application.log();
    mHasLoggedError = std::ranges::any_of(
        entries, [](const std::string& entry) { return entry.starts_with("3 "); });
    const bool isWaiting = application.onScreen() == "[PrinterSelectWindow] ProgressSheet";
    mEnd = outcome == "DlOk"   ? "updated"
           : outcome == "DlNo" ? "failed"
           : isWaiting         ? "waits"
                               : "cannot begin";
    if (isWaiting) return;
    application.closeAlert();
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
    printer.unplug();
    printer.plugIn(fakePrinter());
    updateWell(application, printer, 2);
  }

  // The update stands still until the computer is kept awake, or memory was short.
  static void waitUntilAwake(Application& application, const FailingAllocation& failing,
                             std::size_t pipesBefore) {
    const AllocationsMayFail inTheProgram(true);
    const auto isOver = [&] {
      const AllocationsMayFail inTheTest(false);
      return failing.hasFailed() || openPipes() > pipesBefore;
    };
    EXPECT_TRUE(application.waitUntil(isOver));
  }

  // Whether the allocation was reached, also where its failure ends the program.
  class Noted {
   public:
    Noted(const FailingAllocation& failing, bool& hasFailed)
        : mFailing(failing), mHasFailed(hasFailed) {}
    ~Noted() { mHasFailed = mFailing.hasFailed(); }
    Noted(const Noted&) = delete;
    Noted& operator=(const Noted&) = delete;

   private:
    const FailingAllocation& mFailing;
    bool& mHasFailed;
  };

  static void updateWell(Application& application, BusPrinter& printer, unsigned row) {
    const bool hasNew = printer.version() == "200";
    ASSERT_TRUE(application.select(row) && application.download());
    printer.serveAll();
    EXPECT_EQ(application.outcome(), hasNew ? "DlUd" : "DlOk");
  }

  // The program is started again.
  void updateAnew() {
    Application application(mResources.path().string());
    BusPrinter printer(application);
    EXPECT_EQ(application.run([&] {
      printer.plugIn(fakePrinter());
      updateWell(application, printer, 1);
    }),
              0);
  }

  std::size_t mAllocation;
  TemporaryDirectory mResources;
  std::string mEnd;
  bool mHasFailed = false;
  bool mHasLoggedError = false;
};

// It goes well all the same, ends as failed, does not begin, or ends the program with status 1. It
// never leaves a download behind that nobody goes on with.
TEST(FaultsOfMemory, EachAllocationOfAnUpdate) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "none", 1);
  const PrivateBus bus(PrivateBus::Kind::System);
  BusServices services(PrivateBus::Kind::System, {"login1"});
  std::map<std::string, std::size_t> ends;
  for (std::size_t i = 0;; ++i) {
    SCOPED_TRACE("allocation " + std::to_string(i));
    const std::string end = UpdateWithoutMemory(i).run();
    if (end.empty()) break;
    ++ends[end];
    while (services.hasNews()) services.news();
  }
  EXPECT_THAT(ends,
              testing::UnorderedElementsAre(testing::Pair("updated", testing::Gt(20)),
                                            testing::Pair("failed", testing::Gt(100)),
                                            testing::Pair("cannot begin", testing::Gt(10)),
                                            testing::Pair("ends with status 1", testing::Gt(20))));
}

}  // namespace
