// One opening of an interface: the claim on it, its transfers in flight and their completions on
// the way. Owned by the interface object while that is open. Ending it cancels the transfers, waits
// until the kernel has let go of each, and drops the completions that have not been delivered. The
// end of the device ends the transfers, too, but that is told.
#pragma once

#include <libusb-1.0/libusb.h>

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <vector>

#include "platform/UsbRegistry.h"
#include "platform/libusb/AttachedDevice.h"

namespace platform {

class InterfaceSession : public UsbEventSource {
 public:
  struct Request {
    const UsbEndpointDescription& endpoint;
    void* buffer;
    std::uint32_t size;
    std::uint32_t timeout;  // milliseconds, 0 for none
    IOAsyncCallback callback;
    void* refCon;
  };

  static IOReturn open(std::shared_ptr<AttachedDevice> device,
                       const UsbInterfaceDescription& interface,
                       std::unique_ptr<InterfaceSession>& session);
  ~InterfaceSession() override;
  InterfaceSession(const InterfaceSession&) = delete;
  InterfaceSession& operator=(const InterfaceSession&) = delete;

  IOReturn clearStall(const UsbEndpointDescription& endpoint);
  IOReturn submit(const Request& request);

  // Completions wait until there is a run loop to deliver them.
  void addTo(RunLoop& runLoop) override;

 private:
  struct Transfer {
    InterfaceSession* session;
    std::unique_ptr<libusb_transfer, decltype(&libusb_free_transfer)> transfer;
    IOAsyncCallback callback;
    void* refCon;
  };

  InterfaceSession(std::shared_ptr<AttachedDevice> device, std::shared_ptr<OpenDevice> open,
                   std::uint8_t number);
  void endTransfers();
  static void LIBUSB_CALL transferEnded(libusb_transfer* transfer);
  void deliver(std::function<void()> completion);

  std::shared_ptr<AttachedDevice> mDevice;
  std::shared_ptr<OpenDevice> mOpen;
  std::uint8_t mNumber;
  std::list<Transfer> mInFlight;
  RunLoop* mRunLoop = nullptr;
  std::vector<std::function<void()>> mUndelivered;  // until there is a run loop
  bool mEnding = false;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace platform
