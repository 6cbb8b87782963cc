// The entry point: chooses who provides the platform, and runs the program on it. The platform
// outlives everything that reaches it.
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>

#include "FirmwareDownloader.h"
#include "LogOptions.h"
#include "UI.h"
#include "platform/Files.h"
#include "platform/Network.h"
#include "platform/Platform.h"
#include "platform/Status.h"
#include "platform/SystemLog.h"
#include "platform/avahi/AvahiServiceDiscovery.h"
#include "platform/libusb/LibusbRegistry.h"
#include "platform/posix/PosixBundle.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"
#include "platform/posix/PosixStatusTable.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/qt/QtApplication.h"
#include "runAndReport.h"

namespace {

// In the order of construction: what stands on the run loop goes before the application that has
// it.
class Host {
 public:
  Host()
      : mStatuses(platform::makePosixStatusTable()),
        mSystemLog(platform::makePosixSystemLog()),
        mBundle(platform::makePosixBundle()),
        mFiles(platform::makePosixFiles()),
        mApplication(platform::makeQtApplication("fwupdate", *mBundle)),
        mNetwork(platform::makePosixNetwork(mApplication->runLoop())),
        mServices(platform::makeAvahiServiceDiscovery(mApplication->runLoop())),
        mUsb(platform::makeLibusbRegistry(mApplication->runLoop())) {}

  platform::Platform surfaces() const {
    return {.statuses = mStatuses.get(),
            .systemLog = mSystemLog.get(),
            .bundle = mBundle.get(),
            .strings = &mApplication->strings(),
            .files = mFiles.get(),
            .runLoop = &mApplication->runLoop(),
            .events = &mApplication->events(),
            .network = mNetwork.get(),
            .services = mServices.get(),
            .usb = mUsb.get(),
            .toolkit = &mApplication->toolkit()};
  }

 private:
  std::unique_ptr<platform::StatusTable> mStatuses;
  std::unique_ptr<platform::SystemLog> mSystemLog;
  std::unique_ptr<platform::Bundle> mBundle;
  std::unique_ptr<platform::Files> mFiles;
  std::unique_ptr<platform::QtApplication> mApplication;
  std::unique_ptr<platform::Network> mNetwork;
  std::unique_ptr<platform::ServiceDiscovery> mServices;
  std::unique_ptr<platform::UsbRegistry> mUsb;
};

void runUpdater() {
  FirmwareDownloader downloader;
  UI ui(downloader);
  ui.run();
}

}  // namespace

int main(int argc, char** argv) {
  // Whoever reads standard error may go at any time, and must not take a download along.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  std::unique_ptr<Host> host;
  try {
    host = std::make_unique<Host>();
  } catch (const std::exception& error) {
    std::cerr << "fwupdate: cannot start: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
  const platform::PlatformScope scope(host->surfaces());
  const LogOptions logOptions(argc > 1 && std::strcmp(argv[1], "-e") == 0);
  return runAndReport(runUpdater);
}
