// The surfaces that the program stands on. main() installs the real ones before anything else; a
// test installs its own for a scope. Nothing here is owned.
#pragma once

namespace platform {

class Bundle;
class DeviceLocks;
class Diagnostics;
class DiscoveryStatus;
class DownloadObserver;
class Events;
class Files;
class LocalizedStrings;
class LogHistory;
class Network;
class RunLoop;
class ServiceDiscovery;
class StatusTable;
class SystemLog;
class Toolkit;
class UsbRegistry;

// A null member is a surface that the running code must not reach.
struct Platform {
  StatusTable* statuses = nullptr;
  SystemLog* systemLog = nullptr;
  Bundle* bundle = nullptr;
  LocalizedStrings* strings = nullptr;
  Files* files = nullptr;
  RunLoop* runLoop = nullptr;
  Events* events = nullptr;
  Network* network = nullptr;
  ServiceDiscovery* services = nullptr;
  UsbRegistry* usb = nullptr;
  Toolkit* toolkit = nullptr;
  DeviceLocks* deviceLocks = nullptr;            // null: nobody else is kept out
  DiscoveryStatus* discoveryStatus = nullptr;    // null: nobody knows
  Diagnostics* diagnostics = nullptr;            // null: nobody is told of the machine
  DownloadObserver* downloadObserver = nullptr;  // null: nobody watches
  LogHistory* logHistory = nullptr;              // null: what was logged is not kept
};

// The installed platform; all members null when none is.
const Platform& current() noexcept;

// Installs a platform for its own lifetime and brings back the one before.
class PlatformScope {
 public:
  explicit PlatformScope(const Platform& installed) noexcept;
  ~PlatformScope();
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;

 private:
  Platform mPrevious;
};

}  // namespace platform
