// The entry point: chooses who provides the platform, and runs the program on it. The log comes
// first, so that whatever the rest cannot do is in it.
#include <chrono>
#include <csignal>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Branding.h"
#include "FirmwareDownloader.h"
#include "Log.h"
#include "LogOptions.h"
#include "UI.h"
#include "describeFirmwareFiles.h"
#include "platform/DeviceLocks.h"
#include "platform/Diagnostics.h"
#include "platform/DiscoveryStatus.h"
#include "platform/DownloadObserver.h"
#include "platform/Files.h"
#include "platform/LogHistory.h"
#include "platform/Network.h"
#include "platform/Platform.h"
#include "platform/Status.h"
#include "platform/SystemLog.h"
#include "platform/Translatable.h"
#include "platform/avahi/AvahiServiceDiscovery.h"
#include "platform/avahi/DaemonVersion.h"
#include "platform/dbus/DesktopNotifier.h"
#include "platform/dbus/PowerLock.h"
#include "platform/dbus/SilentBuses.h"
#include "platform/libusb/DevicesReport.h"
#include "platform/libusb/LibusbRegistry.h"
#include "platform/posix/HostDescription.h"
#include "platform/posix/PosixBundle.h"
#include "platform/posix/PosixDeviceLocks.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"
#include "platform/posix/PosixStatusTable.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/qt/DesktopDescription.h"
#include "platform/qt/DownloadNotification.h"
#include "platform/qt/QtApplication.h"
#include "runAndReport.h"

namespace {

// What the log stands on. Nothing of it can fail.
class LogHost {
 public:
  LogHost()
      : mStatuses(platform::makePosixStatusTable()),
        mSystemLog(platform::makePosixSystemLog()),
        mLogHistory(*mSystemLog),
        mBundle(platform::makePosixBundle()) {}

  platform::Platform surfaces() {
    return {.statuses = mStatuses.get(),
            .systemLog = &mLogHistory,
            .bundle = mBundle.get(),
            .logHistory = &mLogHistory};
  }

 private:
  std::unique_ptr<platform::StatusTable> mStatuses;
  std::unique_ptr<platform::SystemLog> mSystemLog;
  platform::LogHistory mLogHistory;
  std::unique_ptr<platform::Bundle> mBundle;
};

// Whoever started the program from a terminal is told there, too.
void reportNoDisplay() {
  const LogOptions mirroring(true);
  Log<3>() << "cannot open a display. Start it from a desktop session, or set DISPLAY or "
              "WAYLAND_DISPLAY."
           << std::flush;
}

void logError(const std::string& entry) { Log<3>() << entry << std::flush; }
void logNotice(const std::string& entry) { Log<5>() << entry << std::flush; }

//: Shown by the desktop, with the program's name, as what keeps the computer from sleeping or from
//: being shut down.
constexpr char kWhyAwake[] = TRANSLATABLE("Localizable", "A printer is getting new firmware.");

std::unique_ptr<platform::DownloadObserver> makePowerLock(platform::QtApplication& application) {
  const platform::Text why =
      application.strings().localizedString(platform::Text::fromUtf8(kWhyAwake));
  return platform::makePowerLock(application.runLoop(), {"fwupdate", std::string(why.utf8())},
                                 &logNotice);
}

const char* nameOf(platform::DiscoveryStatus::Searcher searcher) {
  switch (searcher) {
    case platform::DiscoveryStatus::Searcher::Daemon:
      return "done by the daemon";
    case platform::DiscoveryStatus::Searcher::Program:
      return "done by the program itself";
    case platform::DiscoveryStatus::Searcher::Nobody:
      break;
  }
  return "done by nobody";
}

// What the report to whoever helps is made of.
void addParts(platform::Diagnostics& diagnostics, platform::RunLoop& runLoop,
              const platform::DiscoveryStatus& discovery, const platform::Bundle& bundle) {
  diagnostics.add("System", [] { return platform::describeHost(); });
  diagnostics.add("Desktop", [] { return platform::describeDesktop(); });
  diagnostics.addAnswer("Avahi daemon", [&runLoop](platform::Diagnostics::Answer answer) {
    return platform::askDaemonVersion(runLoop, std::move(answer));
  });
  diagnostics.add("Search for network printers",
                  [&discovery] { return std::vector<std::string>{nameOf(discovery.searcher())}; });
  diagnostics.add("USB devices",
                  [] { return platform::describeUsbDevices(Branding::sUsbVendorId); });
  diagnostics.add("Firmware files", [&bundle] {
    const auto resources = bundle.resourcesDirectory();
    return resources ? describeFirmwareFiles(*resources) : std::vector<std::string>{};
  });
}

// All else, beside what the log stands on. In the order of construction: what stands on the run
// loop goes before the application that has it.
class Host {
 public:
  explicit Host(const platform::Platform& logSurfaces)
      : mLogSurfaces(logSurfaces),
        mFiles(platform::makePosixFiles()),
        mApplication(
            platform::makeQtApplication("fwupdate", *logSurfaces.bundle, &reportNoDisplay)),
        mNetwork(platform::makePosixNetwork(mApplication->runLoop())),
        mDeviceLocks(platform::makePosixDeviceLocks()),
        mServices(platform::makeAvahiServiceDiscovery(mApplication->runLoop(), Branding::sModelStr,
                                                      &mDiscoveryStatus)),
        mUsb(platform::makeLibusbRegistry(mApplication->runLoop(), &logError)),
        mPowerLock(makePowerLock(*mApplication)),
        mNotifier(mApplication->runLoop(), "fwupdate"),
        mNotification(platform::makeDownloadNotification(
            [this](const std::string& title, const std::string& text) {
              mNotifier.show(title, text);
            })),
        mDiagnostics(mApplication->runLoop(), PROGRAM_VERSION,
                     {{"Qt", platform::qtVersion()},
                      {"libusb", platform::libusbVersion()},
                      {"Avahi", platform::avahiVersion()},
                      {"libdbus", platform::busLibraryVersion()}},
                     platform::personalNames()) {
    addParts(mDiagnostics, mApplication->runLoop(), mDiscoveryStatus, *logSurfaces.bundle);
    mDownloadObservers.add(*logSurfaces.logHistory);
    mDownloadObservers.add(*mPowerLock);
    mDownloadObservers.add(*mNotification);
    mDownloadObservers.add(mApplication->downloadObserver());
    mDownloadObservers.add(*mUsb);
  }

  platform::Platform surfaces() {
    platform::Platform surfaces = mLogSurfaces;
    surfaces.strings = &mApplication->strings();
    surfaces.files = mFiles.get();
    surfaces.runLoop = &mApplication->runLoop();
    surfaces.events = &mApplication->events();
    surfaces.network = mNetwork.get();
    surfaces.deviceLocks = mDeviceLocks.get();
    surfaces.services = mServices.get();
    surfaces.usb = mUsb.get();
    surfaces.toolkit = &mApplication->toolkit();
    surfaces.diagnostics = &mDiagnostics;
    surfaces.discoveryStatus = &mDiscoveryStatus;
    surfaces.downloadObserver = &mDownloadObservers;
    return surfaces;
  }

 private:
  platform::Platform mLogSurfaces;
  std::unique_ptr<platform::Files> mFiles;
  std::unique_ptr<platform::QtApplication> mApplication;
  std::unique_ptr<platform::Network> mNetwork;
  std::unique_ptr<platform::DeviceLocks> mDeviceLocks;
  platform::DiscoveryStatus mDiscoveryStatus;
  std::unique_ptr<platform::ServiceDiscovery> mServices;
  std::unique_ptr<platform::LibusbRegistry> mUsb;
  std::unique_ptr<platform::DownloadObserver> mPowerLock;
  platform::DesktopNotifier mNotifier;
  std::unique_ptr<platform::DownloadObserver> mNotification;
  platform::Diagnostics mDiagnostics;
  platform::DownloadObservers mDownloadObservers;
};

// Qt would wait for them, and there would be no window.
void leaveSilentBuses() {
  constexpr std::chrono::seconds kPatience{5};
  const std::string name = platform::leaveSilentBuses(kPatience);
  if (!name.empty()) logNotice("Unable to use the " + name + ": no answer");
}

// The platform outlives everything that reaches it.
void runUpdater() {
  leaveSilentBuses();
  Host host(platform::current());
  const platform::PlatformScope scope(host.surfaces());
  FirmwareDownloader downloader;
  UI ui(downloader);
  ui.run();
}

}  // namespace

int main(int argc, char** argv) {
  // Whoever reads standard error may go at any time, and must not take a download along.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  LogHost logHost;
  const platform::PlatformScope scope(logHost.surfaces());
  const LogOptions logOptions(argc > 1 && std::strcmp(argv[1], "-e") == 0);
  return runAndReport(runUpdater);
}
