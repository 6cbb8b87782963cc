// libusb itself, driven by the run loop: its file descriptors are watched, and its events are
// handled there and nowhere else. Shared by the registry and by every object that uses a device, so
// that libusb ends after the last of them. What libusb calls back only notes what happened; acting
// on it is left to the run loop.
#pragma once

#include <libusb-1.0/libusb.h>

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/RunLoop.h"
#include "platform/UsbRegistry.h"

namespace platform {

using LibusbDevice = std::shared_ptr<libusb_device>;

class LibusbContext : public std::enable_shared_from_this<LibusbContext> {
 public:
  using PlugHandler = std::function<void(const LibusbDevice& device, bool arrived)>;

  // Null where the host has no USB.
  static std::shared_ptr<LibusbContext> create(RunLoop& runLoop);

  // Why nothing can be told of what is plugged in, or of the ends of transfers; success when it
  // can.
  IOReturn hearing() const { return mHearing; }

  ~LibusbContext();
  LibusbContext(const LibusbContext&) = delete;
  LibusbContext& operator=(const LibusbContext&) = delete;

  // Tells `handler` from the run loop what is plugged in or unplugged; a null handler ends that.
  void setPlugHandler(PlugHandler handler) { mPlugHandler = std::move(handler); }

  std::vector<LibusbDevice> attachedDevices() const;

  // A handle on the device whose node is open as `node`, which must stay open as long.
  IOReturn wrap(int node, libusb_device_handle*& handle);

  // Tells that the device has left and arrived, as one that was reset has for its users.
  void announceAnew(const LibusbDevice& device);

  // Waits for events, for a short time, and handles them: for those who must see their transfers
  // end.
  void awaitEvents();

  RunLoop& runLoop() const { return mRunLoop; }

 private:
  struct DescriptorWatch {
    std::unique_ptr<RunLoop::Watch> readable;
    std::unique_ptr<RunLoop::Watch> writable;
  };

  struct PlugEvent {
    LibusbDevice device;
    bool arrived;
  };

  LibusbContext(RunLoop& runLoop, libusb_context* context);
  IOReturn listen();
  void handleReadyEvents();
  void addDescriptor(int descriptor, short events);
  void notePlugEvent(libusb_device* device, bool arrived);
  void tellPlugEvents();

  static void LIBUSB_CALL descriptorAdded(int descriptor, short events, void* context);
  static void LIBUSB_CALL descriptorRemoved(int descriptor, void* context);
  static int LIBUSB_CALL plugged(libusb_context*, libusb_device* device, libusb_hotplug_event event,
                                 void* context);

  RunLoop& mRunLoop;
  libusb_context* mContext;
  std::map<int, DescriptorWatch> mDescriptors;
  PlugHandler mPlugHandler;
  std::vector<PlugEvent> mPlugEvents;
  IOReturn mHearing;
};

}  // namespace platform
