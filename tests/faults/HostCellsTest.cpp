// Every cell in which a service of the computer fails: the whole program updates a printer that it
// has found by an Avahi daemon, keeps the computer awake and logs, on a bus and beside a log daemon
// that are the test's.
#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "Application.h"
#include "AvahiArguments.h"
#include "BusServices.h"
#include "CellProcess.h"
#include "DownloadFixture.h"
#include "FakeAvahiDaemon.h"
#include "HostCells.h"
#include "Log.h"
#include "NetworkCells.h"
#include "PrivateBus.h"
#include "SystemLogSocket.h"
#include "TemporaryDirectory.h"
#include "networkSteps.h"
#include "platform/DiscoveryStatus.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"
#include "platform/avahi/AvahiServiceDiscovery.h"
#include "platform/dbus/PowerLock.h"
#include "platform/posix/PosixSystemLog.h"
#include "printerLock.h"

namespace {

using std::chrono::seconds;
using Searcher = platform::DiscoveryStatus::Searcher;

constexpr char kLock[] =
    "lock sleep:shutdown:handle-lid-switch | fwupdate | A printer is getting new firmware. | block";
constexpr char kUnlock[] = "unlock sleep:shutdown:handle-lid-switch";

// The bus, who stands on it, and how each fails.
class Services {
 public:
  explicit Services(std::uint16_t port) : mPort(port) { start(); }
  // Who has to say goodbye to a frozen bus would wait for it.
  ~Services() {
    if (mIsFrozen) mBus.signal(SIGCONT);
  }
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  void turn() { mDaemon->turn(); }

  bool wasAsked(const std::string& member) const {
    return std::ranges::any_of(
        mDaemon->calls(), [&](const std::string& call) { return call.starts_with("/ " + member); });
  }

  void tellOfPrinter() {
    mDaemon->signal("/ServiceBrowserNew", "org.freedesktop.Avahi.ServiceBrowser", "ItemNew",
                    appendItem);
  }
  void tellPlaceOfPrinter() {
    mDaemon->signal("/ServiceResolverNew", "org.freedesktop.Avahi.ServiceResolver", "Found",
                    [this](DBusMessage* message) {
                      appendAnswer(message, {.address = "127.0.0.1",
                                             .port = mPort,
                                             .txt = {"usb_MFG=Veltra", "usb_MDL=KX350T"}});
                    });
  }

  void stopDaemon() { mDaemon->leaveTheBus(); }
  void restartDaemon() {
    mDaemon.reset();
    mDaemon = std::make_unique<FakeAvahiDaemon>();
  }
  void stopBus() { mBus.stop(); }
  void restartBus() {
    mBus.stop();
    mBus.start();
    mLocksBefore = std::move(mLocks);
    start();
  }
  void freezeBus() {
    mBus.signal(SIGSTOP);
    mIsFrozen = true;
  }

  BusServices& locks() { return *mLocks; }
  // Of the bus before.
  BusServices& locksBefore() { return mLocksBefore ? *mLocksBefore : *mLocks; }

 private:
  void start() {
    mLocks =
        std::make_unique<BusServices>(PrivateBus::Kind::System, std::vector<std::string>{"login1"});
    mDaemon = std::make_unique<FakeAvahiDaemon>();
  }

  const std::uint16_t mPort;
  PrivateBus mBus{PrivateBus::Kind::System};
  std::unique_ptr<BusServices> mLocks;
  std::unique_ptr<BusServices> mLocksBefore;
  std::unique_ptr<FakeAvahiDaemon> mDaemon;
  bool mIsFrozen = false;
};

// The update that a cell speaks of, and the one after it.
class HostCellRun {
 public:
  explicit HostCellRun(const HostCell& cell) : mCell(cell) {
    std::ofstream(mResources.path() / "product.brand.bin", std::ios::binary) << firmware200();
  }
  virtual ~HostCellRun() = default;

  void run() {
    Application application(mResources.path().string(), nullptr, parts());
    EXPECT_EQ(application.run([&] { update(application); }), 0);
    EXPECT_EQ(application.held(), "0 watches, 0 timers, 0 updates");
    EXPECT_FALSE(isLocked(port()));
    expectPrinter();
  }

 protected:
  virtual ApplicationParts parts() { return {}; }
  virtual void find(Application& application) = 0;
  virtual void begun(Application&) {}
  virtual void strike(Application& application) = 0;
  virtual void whileItBurns(Application&) {}
  virtual void ended(Application&) {}
  virtual void leave() {}

  std::uint16_t port() const { return mPrinter.port(); }
  const HostCell& cell() const { return mCell; }

 private:
  void update(Application& application) {
    find(application);
    ASSERT_TRUE(application.select(1));
    if (mCell.step == 0) strike(application);
    ASSERT_TRUE(application.download());
    begun(application);
    if (mCell.step > 0) {
      runUntilStep(application, mCell.step);
      strike(application);
    }
    runUntilStep(application, 8);
    EXPECT_TRUE(isLocked(port()));
    whileItBurns(application);
    expectUpdated(application, "DlOk");
    EXPECT_EQ(joined(withoutArrivals(application.log())), joined(mCell.log));
    EXPECT_FALSE(isLocked(port()));
    ended(application);
    mPrinter.waitFor("ready", 2);
    ASSERT_TRUE(application.select(1) && application.download());
    expectUpdated(application, "DlUd");
    EXPECT_TRUE(application.closeAlert());
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
    leave();
  }

  static void runUntilStep(Application& application, std::size_t step) {
    EXPECT_TRUE(application.runUntil([&] {
      const Lines log = application.log();
      const auto begun = std::ranges::count_if(
          log, [](const std::string& line) { return line.starts_with("5 Async "); });
      return static_cast<std::size_t>(begun) == step;
    }));
  }

  static void expectUpdated(Application& application, const std::string& outcome) {
    EXPECT_TRUE(application.runUntil([&] { return !application.outcome().empty(); }));
    EXPECT_EQ(application.outcome(), outcome);
    EXPECT_EQ(application.onScreen(), outcome == "DlOk"
                                          ? "PrinterSelectWindow"
                                          : "[PrinterSelectWindow] [ProgressSheet] UpToDateSheet");
  }

  // It was updated once, without a message too many.
  void expectPrinter() {
    EXPECT_EQ(mPrinter.stop(), 0);
    Lines received;
    for (const auto& entry : mPrinter.entries("received")) {
      if (entry.at("connection") == 1) received.push_back(entry.at("message").get<std::string>());
    }
    EXPECT_EQ(received, (Lines{"status-off", "id-request", "burn-header", "image", "uel"}));
    EXPECT_EQ(mPrinter.entries("closed").at(0).at("position"), mCell.position);
    EXPECT_EQ(mPrinter.entries("burn").size(), 1u);
  }

  const HostCell& mCell;
  TemporaryDirectory mResources;
  VirtualPrinterProcess mPrinter{printerOptions({})};
};

class BusCellRun final : public HostCellRun {
 public:
  using HostCellRun::HostCellRun;

 private:
  // From the system bus alone.
  ApplicationParts parts() override {
    ApplicationParts parts;
    parts.services = [this](platform::RunLoop& runLoop) {
      return platform::makeAvahiServiceDiscovery(runLoop, {}, &mStatus);
    };
    parts.powerLock = [](platform::RunLoop& runLoop) {
      return platform::makePowerLock(
          runLoop, {"fwupdate", "A printer is getting new firmware."},
          [](const std::string& entry) { Log<5>() << entry << std::flush; });
    };
    return parts;
  }

  void wait(Application& application, const std::function<bool()>& done) {
    EXPECT_TRUE(application.waitUntil([&] {
      mServices.turn();
      return done();
    }));
  }

  void find(Application& application) override {
    wait(application, [&] { return mServices.wasAsked("ServiceBrowserNew"); });
    mServices.tellOfPrinter();
    wait(application, [&] { return mServices.wasAsked("ServiceResolverNew"); });
    mServices.tellPlaceOfPrinter();
    wait(application,
         [&] { return std::ranges::count(application.log(), "5 Adding printer with ID=1") == 1; });
  }

  // The computer is kept awake, where that is possible, before anything else happens.
  void begun(Application& application) override {
    if (atFirst() == HostFault::BusStopped || atFirst() == HostFault::BusFrozen) return;
    const std::size_t pipes = openPipes();
    wait(application, [&] { return openPipes() > pipes; });
    EXPECT_EQ(mServices.locks().news(), kLock);
    mIsLocked = true;
  }

  // The fault that has struck before the update begins.
  std::optional<HostFault> atFirst() const {
    return cell().step == 0 ? std::optional(cell().fault) : std::nullopt;
  }

  void strike(Application& application) override {
    switch (cell().fault) {
      case HostFault::BusStopped:
        mServices.stopBus();
        wait(application, [this] { return mStatus.searcher() == Searcher::Nobody; });
        break;
      case HostFault::DaemonStopped:
        mServices.stopDaemon();
        wait(application, [this] { return mStatus.searcher() == Searcher::Nobody; });
        break;
      case HostFault::BusRestarted:
        mServices.restartBus();
        tellAnew(application);
        break;
      case HostFault::DaemonRestarted:
        mServices.restartDaemon();
        tellAnew(application);
        break;
      default:
        mServices.freezeBus();
        break;
    }
  }

  void tellAnew(Application& application) {
    wait(application, [this] { return mServices.wasAsked("ServiceBrowserNew"); });
    mServices.tellOfPrinter();
  }

  void whileItBurns(Application& application) override {
    if (atFirst() == HostFault::BusFrozen) application.pass(seconds(5));
  }

  void ended(Application&) override {
    if (mIsLocked) {
      EXPECT_EQ((cell().step == 0 ? mServices.locks() : mServices.locksBefore()).news(), kUnlock);
    }
    EXPECT_FALSE(mServices.locks().hasNews());
  }

  Services mServices{port()};
  platform::DiscoveryStatus mStatus;
  bool mIsLocked = false;
};

// The program's log goes to the recorder and to a daemon, which is read at once unless it is
// stopped.
class LogWithDaemon final : public platform::SystemLog {
 public:
  LogWithDaemon(platform::SystemLog& recorder, platform::FileDescriptor& daemon)
      : mRecorder(recorder), mDaemon(daemon) {
    mLog->open("fwupdate", 0, kUserFacility);
  }

  void open(const char*, int, int) override {}
  void close() override {}
  void write(int priority, const char* text) override {
    mRecorder.write(priority, text);
    mWritten.push_back(std::to_string(priority) + " " + text);
    mLog->write(priority, text);
    if (!mIsFrozen) read();
  }

  void setFrozen(bool isFrozen) { mIsFrozen = isFrozen; }

  // What has arrived by now, "PRIORITY TEXT".
  void read() {
    const std::string identity = ">fwupdate: ";
    while (const auto entry = receiveLogEntry(mDaemon)) {
      const std::size_t end = entry->find(identity);
      ASSERT_NE(end, std::string::npos) << *entry;
      const int priority = std::stoi(entry->substr(1)) - kUserFacility;
      mArrived.push_back(std::to_string(priority) + " " + entry->substr(end + identity.size()));
    }
  }

  const Lines& written() const { return mWritten; }
  const Lines& arrived() const { return mArrived; }
  void forget() {
    mWritten.clear();
    mArrived.clear();
  }

 private:
  platform::SystemLog& mRecorder;
  platform::FileDescriptor& mDaemon;
  std::unique_ptr<platform::SystemLog> mLog = platform::makePosixSystemLog();
  bool mIsFrozen = false;
  Lines mWritten;
  Lines mArrived;
};

// In the place of the log's daemon.
class LogCellRun final : public HostCellRun {
 public:
  LogCellRun(const HostCell& cell, platform::FileDescriptor& daemon)
      : HostCellRun(cell), mDaemon(daemon) {}

 private:
  bool startsWithoutDaemon() const {
    return cell().fault == HostFault::LogMissing || cell().fault == HostFault::LogLate;
  }

  void find(Application& application) override {
    if (startsWithoutDaemon()) {
      mDaemon = platform::FileDescriptor();
      EXPECT_TRUE(std::filesystem::remove("/dev/log"));
    }
    platform::Platform surfaces = platform::current();
    mLog = std::make_unique<LogWithDaemon>(*surfaces.systemLog, mDaemon);
    surfaces.systemLog = mLog.get();
    mScope.emplace(surfaces);
    application.announce("Office", port());
  }

  void strike(Application&) override {
    mEntriesBefore = mLog->written().size();
    if (cell().fault == HostFault::LogFrozen) return mLog->setFrozen(true);
    mDaemon = platform::FileDescriptor();
    if (cell().fault == HostFault::LogRestarted || cell().fault == HostFault::LogLate) {
      mDaemon = listenAsLogDaemon();
    }
  }

  void ended(Application&) override {
    EXPECT_EQ(joined(mLog->arrived()), joined(heard()));
    if (cell().fault == HostFault::LogStopped) mDaemon = listenAsLogDaemon();
    mLog->setFrozen(false);
    mLog->read();
    mLog->forget();
  }

  // Of all that the program has said since its start.
  Lines heard() const {
    const Lines& all = mLog->written();
    const auto struck = all.begin() + static_cast<std::ptrdiff_t>(mEntriesBefore);
    EXPECT_LT(struck, all.end());
    switch (cell().fault) {
      case HostFault::LogRestarted:
        return all;
      case HostFault::LogLate:
        return {struck, all.end()};
      case HostFault::LogMissing:
        return {};
      default:
        return {all.begin(), struck};
    }
  }

  // Once there is a daemon that reads, it gets what follows.
  void leave() override {
    const bool isHeard = cell().fault != HostFault::LogMissing;
    EXPECT_EQ(joined(mLog->arrived()), isHeard ? joined(mLog->written()) : "");
    EXPECT_THAT(mLog->written(), testing::IsSupersetOf(kNetworkPrinterChosen));
    mScope.reset();
    mLog.reset();
  }

  platform::FileDescriptor& mDaemon;
  std::unique_ptr<LogWithDaemon> mLog;
  std::optional<platform::PlatformScope> mScope;
  std::size_t mEntriesBefore = 0;
};

template <class Run>
void runCells(const std::string& table, const Run& run) {
  std::size_t count = 0;
  for (const HostCell& cell : hostCells()) {
    if (cell.table != table) continue;
    SCOPED_TRACE(nameOf(cell));
    const std::size_t descriptors = openDescriptors();
    run(cell);
    EXPECT_EQ(openDescriptors(), descriptors);
    ++count;
  }
  EXPECT_NE(count, 0u);
}

void runBusCells(const std::string& table) {
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  runCells(table, [](const HostCell& cell) { BusCellRun(cell).run(); });
}

TEST(FaultsOfTheHost, SystemBusFails) { runBusCells("system bus"); }
TEST(FaultsOfTheHost, AvahiDaemonFails) { runBusCells("Avahi"); }

// Of a process of its own nobody hears otherwise. Returns its status.
int sayWhatFailed() {
  const testing::TestResult& result =
      *testing::UnitTest::GetInstance()->current_test_info()->result();
  for (int i = 0; i < result.total_part_count(); ++i) {
    std::fprintf(stderr, "%s\n", result.GetTestPartResult(i).message());
  }
  return result.Failed() ? 1 : 0;
}

// In a process of its own, whose log daemon is the test's.
TEST(FaultsOfTheHostDeathTest, SystemLogFails) {
  EXPECT_EXIT(
      {
        platform::FileDescriptor daemon = takeLogDaemonsPlace();
        EXPECT_TRUE(static_cast<bool>(daemon));
        runCells("system log", [&](const HostCell& cell) {
          LogCellRun(cell, daemon).run();
          if (!daemon) daemon = listenAsLogDaemon();
        });
        std::_Exit(sayWhatFailed());
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
