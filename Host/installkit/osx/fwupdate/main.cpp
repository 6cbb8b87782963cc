// The entry point: chooses who provides the platform, and turns what the program could not handle
// into a log entry and an exit status.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>

#include "FirmwareDownloader.h"
#include "IoKitException.h"
#include "Log.h"
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
        mServices(makeAvahiServiceDiscovery(mApplication->runLoop())),
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

int failure(const char* prefix, const std::exception& error) {
  Log<3>() << prefix << error.what() << std::flush;
  return EXIT_FAILURE;
}

int runUpdater(bool mirrorLog) {
  const LogOptions logOptions(mirrorLog);
  try {
    FirmwareDownloader downloader;
    UI ui(downloader);
    ui.run();
  } catch (const IoKitException& error) {
    return failure("I/O Kit error occurred: ", error);
  } catch (const std::runtime_error& error) {
    return failure("General runtime error occurred: ", error);
  } catch (const std::bad_alloc& error) {
    return failure("Allocation error occurred: ", error);
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  std::unique_ptr<Host> host;
  try {
    host = std::make_unique<Host>();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fwupdate: cannot start: %s\n", error.what());
    return EXIT_FAILURE;
  }
  const platform::PlatformScope scope(host->surfaces());
  return runUpdater(argc > 1 && std::strcmp(argv[1], "-e") == 0);
}
