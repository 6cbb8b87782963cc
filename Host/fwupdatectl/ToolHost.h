// The platform of this tool: the same as the window's, but for the loop, and without a screen. The
// log comes first, so that whatever the rest cannot do is in it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "InterruptingLog.h"
#include "LogOptions.h"
#include "platform/DiscoveryStatus.h"
#include "platform/DownloadObserver.h"
#include "platform/LogHistory.h"
#include "platform/Platform.h"
#include "platform/RunLoop.h"
#include "platform/systemd/SystemdEventLoop.h"
#include "platform/systemd/SystemdEvents.h"

namespace platform {
class Bundle;
class DeviceLocks;
class Files;
class HeadlessToolkit;
class Network;
class ServiceDiscovery;
class StatusTable;
class UsbRegistry;
}  // namespace platform

class ToolHost {
 public:
  // With `mirror`, the log also goes to standard error.
  explicit ToolHost(bool mirror);
  ~ToolHost();
  ToolHost(const ToolHost&) = delete;
  ToolHost& operator=(const ToolHost&) = delete;

  platform::RunLoop& runLoop() { return *mRunLoop; }
  platform::Events& events() { return mEvents; }
  platform::DiscoveryStatus& discoveryStatus() { return mDiscoveryStatus; }

  // Is told of downloads from now on, and must outlive them.
  void add(platform::DownloadObserver& observer) { mObservers.add(observer); }

  // Is told before and after an entry of the log goes to standard error, until others are given.
  void aroundLog(std::function<void()> before, std::function<void()> after) {
    mLog.tell(std::move(before), std::move(after));
  }
  // Takes firmware from these sealed files where they have it.
  void useImages(const std::vector<int>& descriptors);

  // Keeps the computer awake during downloads.
  void useLocks();

  // What finds printers, and what the list of printers stands on. Installed once they are needed:
  // a process that updates one printer on the network has no use for either.
  void useUsb();
  void useServices();
  void useToolkit(platform::HeadlessToolkit& toolkit);

 private:
  void install();

  std::unique_ptr<platform::StatusTable> mStatuses;
  std::unique_ptr<platform::SystemLog> mSystemLog;
  InterruptingLog mLog;
  platform::LogHistory mLogHistory;
  std::unique_ptr<platform::Bundle> mBundle;
  platform::SystemdEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop;
  platform::SystemdEvents mEvents;
  std::unique_ptr<platform::Files> mFiles;
  std::unique_ptr<platform::Network> mNetwork;
  platform::DiscoveryStatus mDiscoveryStatus;
  std::unique_ptr<platform::DeviceLocks> mDeviceLocks;
  std::unique_ptr<platform::ServiceDiscovery> mServices;
  std::unique_ptr<platform::UsbRegistry> mUsb;
  std::unique_ptr<platform::DownloadObserver> mPowerLock;
  platform::DownloadObservers mObservers;
  platform::Platform mSurfaces;
  std::optional<platform::PlatformScope> mScope;
  std::optional<LogOptions> mLogOptions;
};
