// The devices that are attached now, each with its registry entry. Follows libusb's arrivals and
// departures, and the changes of their configurations, and tells its owner, the registry, from the
// run loop. A device that is configured anew leaves and arrives as another one.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/libusb/InterfaceChanges.h"
#include "platform/libusb/RegistryObjects.h"

namespace platform {

class AttachedDevices {
 public:
  using Handler = std::function<void(io_service_t entry)>;

  // `objects` holds the entries. The handlers may be null.
  AttachedDevices(RunLoop& runLoop, std::shared_ptr<ObjectTable> objects, Handler arrived,
                  Handler gone, ErrorReports reports);
  ~AttachedDevices();
  AttachedDevices(const AttachedDevices&) = delete;
  AttachedDevices& operator=(const AttachedDevices&) = delete;

  // Why later arrivals and departures cannot be told; success when they can, or when there is no
  // USB.
  IOReturn hearing() const;

  // Lends the interfaces that are open and not in use to the kernel's drivers.
  void giveBack();

  // In the order of their arrival.
  std::vector<io_service_t> entries() const;

 private:
  struct Unconfigured {
    LibusbDevice device;
    int attempts;
  };

  void plugged(const LibusbDevice& device, bool arrived);
  void deviceArrived(const LibusbDevice& device);
  void deviceLeft(const LibusbDevice& device);
  void publish(const LibusbDevice& device, UsbDeviceDescription description);
  void lookAgain();
  void describeAgain();

  RunLoop& mRunLoop;
  std::shared_ptr<ObjectTable> mObjects;
  std::shared_ptr<LibusbContext> mContext;  // null where the host has no USB
  Handler mArrived;
  Handler mGone;
  ErrorReports mReports;
  std::vector<std::pair<LibusbDevice, ObjectReference>> mPublished;
  std::vector<Unconfigured> mUnconfigured;
  std::unique_ptr<RunLoop::Timer> mTimer;  // while there are unconfigured ones
  std::unique_ptr<InterfaceChanges> mChanges;
};

}  // namespace platform
