#include "ToolHost.h"

#include <chrono>
#include <ostream>
#include <string>
#include <utility>

#include "Branding.h"
#include "Log.h"
#include "platform/DeviceLocks.h"
#include "platform/Files.h"
#include "platform/Network.h"
#include "platform/ServiceDiscovery.h"
#include "platform/Status.h"
#include "platform/SystemLog.h"
#include "platform/UsbRegistry.h"
#include "platform/avahi/AvahiServiceDiscovery.h"
#include "platform/dbus/PowerLock.h"
#include "platform/headless/HeadlessToolkit.h"
#include "platform/libusb/LibusbRegistry.h"
#include "platform/posix/PosixBundle.h"
#include "platform/posix/PosixDeviceLocks.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"
#include "platform/posix/PosixStatusTable.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/SealedFile.h"
#include "platform/systemd/SystemdRunLoop.h"

namespace {

void logError(const std::string& entry) { Log<3>() << entry << std::flush; }

// No window waits meanwhile.
constexpr std::chrono::seconds kHolderSearchTime{1};

void logNotice(const std::string& entry) { Log<5>() << entry << std::flush; }

}  // namespace

ToolHost::ToolHost(bool mirror)
    : mStatuses(platform::makePosixStatusTable()),
      mSystemLog(platform::makePosixSystemLog()),
      mLog(*mSystemLog),
      mLogHistory(mLog),
      mBundle(platform::makePosixBundle()),
      mRunLoop(platform::makeSystemdRunLoop(mLoop)),
      mEvents(mLoop, *mRunLoop),
      mFiles(platform::makePosixFiles()),
      mNetwork(platform::makePosixNetwork(*mRunLoop)),
      mDeviceLocks(platform::makePosixDeviceLocks()) {
  mObservers.add(mLogHistory);
  mSurfaces = {.statuses = mStatuses.get(),
               .systemLog = &mLogHistory,
               .bundle = mBundle.get(),
               .files = mFiles.get(),
               .runLoop = mRunLoop.get(),
               .events = &mEvents,
               .network = mNetwork.get(),
               .deviceLocks = mDeviceLocks.get(),
               .downloadObserver = &mObservers,
               .logHistory = &mLogHistory};
  install();
  mLogOptions.emplace(mirror);
}

ToolHost::~ToolHost() = default;

void ToolHost::useImages(const std::vector<int>& descriptors) {
  std::vector<platform::SealedFile> images;
  for (const int each : descriptors) {
    auto image = platform::SealedFile::fromDescriptor(platform::FileDescriptor(each));
    if (image) images.push_back(*std::move(image));
  }
  mFiles = platform::makePosixFiles(std::move(images));
  mSurfaces.files = mFiles.get();
  install();
}

void ToolHost::useLocks() {
  mPowerLock = platform::makePowerLock(
      *mRunLoop, {"fwupdatectl", "A printer is getting new firmware."}, &logNotice);
  mObservers.add(*mPowerLock);
}

void ToolHost::useUsb() {
  mUsb = platform::makeLibusbRegistry(*mRunLoop, &logError, kHolderSearchTime);
  mSurfaces.usb = mUsb.get();
  install();
}

void ToolHost::useServices() {
  mServices =
      platform::makeAvahiServiceDiscovery(*mRunLoop, Branding::sModelStr, &mDiscoveryStatus);
  mSurfaces.services = mServices.get();
  install();
}

void ToolHost::useToolkit(platform::HeadlessToolkit& toolkit) {
  mSurfaces.toolkit = &toolkit;
  install();
}

void ToolHost::install() {
  mScope.reset();
  mScope.emplace(mSurfaces);
}
