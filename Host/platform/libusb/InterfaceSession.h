// One opening of an interface: the claim on it, its transfers in flight and their completions on
// the way. Owned by the interface object while that is open. Ending it cancels the transfers, waits
// until the kernel has let go of each, and drops the completions that have not been delivered. The
// end of the device ends the transfers, too, but that is told. Between two uses the kernel's driver
// may have the interface; if it does not come for it, the log says so.
#pragma once

#include <libusb-1.0/libusb.h>

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "platform/UsbRegistry.h"
#include "platform/libusb/AttachedDevice.h"
#include "platform/libusb/KernelDriverReturn.h"

namespace platform {

class InterfaceSession : public UsbEventSource, private InterfaceUser {
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
                   const UsbInterfaceDescription& interface, std::string driver);
  void endTransfers() override;
  void giveBack() override;
  IOReturn claimAgain();
  bool isDriverMissing() const;
  void awaitDriver();
  void checkDriver();
  static void LIBUSB_CALL transferEnded(libusb_transfer* transfer);
  void deliver(std::function<void()> completion);

  std::shared_ptr<AttachedDevice> mDevice;
  std::shared_ptr<OpenDevice> mOpen;
  const UsbInterfaceDescription& mInterface;
  std::string mDriver;  // of the kernel, that had the interface before; may be empty
  std::list<Transfer> mInFlight;
  RunLoop* mRunLoop = nullptr;
  std::vector<std::function<void()>> mUndelivered;  // until there is a run loop
  bool mEnding = false;
  std::unique_ptr<KernelDriverReturn> mReturn;  // while the driver is on its way
  std::unique_ptr<RunLoop::Timer> mCheck;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace platform
