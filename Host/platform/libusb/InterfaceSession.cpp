#include "platform/libusb/InterfaceSession.h"

#include <chrono>
#include <limits>
#include <utility>

#include "platform/libusb/LibusbResults.h"
#include "platform/libusb/SysfsAttribute.h"

namespace platform {
namespace {

// A printer that starts over is off the bus by then.
constexpr std::chrono::seconds kLeavingTime{1};

// The kernel's driver that has the interface; empty for none, and for a program.
std::string kernelDriverOf(const UsbInterfaceDescription& interface) {
  const std::string driver = readSysfsDriver(interface.directory);
  return driver == kUserSpaceDriver ? "" : driver;
}

}  // namespace

IOReturn InterfaceSession::open(std::shared_ptr<AttachedDevice> device,
                                const UsbInterfaceDescription& interface,
                                std::unique_ptr<InterfaceSession>& session) {
  std::shared_ptr<OpenDevice> open;
  IOReturn result = device->open(open);
  if (result != kIOReturnSuccess) return result;
  if (open->hasUser(interface.number)) return kIOReturnExclusiveAccess;
  std::string driver = kernelDriverOf(interface);
  result = device->claim(*open, interface);
  if (result != kIOReturnSuccess) return result;
  session.reset(
      new InterfaceSession(std::move(device), std::move(open), interface, std::move(driver)));
  return kIOReturnSuccess;
}

InterfaceSession::InterfaceSession(std::shared_ptr<AttachedDevice> device,
                                   std::shared_ptr<OpenDevice> open,
                                   const UsbInterfaceDescription& interface, std::string driver)
    : mDevice(std::move(device)),
      mOpen(std::move(open)),
      mInterface(interface),
      mDriver(std::move(driver)) {
  mOpen->setUser(mInterface.number, *this);
}

InterfaceSession::~InterfaceSession() {
  mEnding = true;
  InterfaceSession::endTransfers();
  mOpen->release(mInterface.number);
}

void InterfaceSession::endTransfers() {
  for (const Transfer& each : mInFlight) libusb_cancel_transfer(each.transfer.get());
  while (!mInFlight.empty()) mDevice->context().awaitEvents();
}

void InterfaceSession::giveBack() {
  if (!mInFlight.empty() || !mOpen->hasClaimed(mInterface.number)) return;
  mOpen->lend(mInterface.number);
  mReturn = std::make_unique<KernelDriverReturn>(mDevice->context().runLoop(), mOpen->node(),
                                                 mInterface.number, [this] { awaitDriver(); });
}

IOReturn InterfaceSession::claimAgain() {
  if (mDevice->isGone()) return kIOReturnNoDevice;
  if (mOpen->hasClaimed(mInterface.number)) return kIOReturnSuccess;
  mReturn.reset();
  mCheck.reset();
  mDriver = kernelDriverOf(mInterface);
  return mDevice->claim(*mOpen, mInterface);
}

bool InterfaceSession::isDriverMissing() const {
  return !mDriver.empty() && !mDevice->isGone() && isPresent(mInterface) &&
         readSysfsDriver(mInterface.directory).empty();
}

// It may be missing because the printer is on its way out, which is told later.
void InterfaceSession::awaitDriver() {
  mReturn.reset();
  if (!isDriverMissing()) return;
  mCheck = mDevice->context().runLoop().startTimer(kLeavingTime, false, [this] { checkDriver(); });
}

void InterfaceSession::checkDriver() {
  mCheck.reset();
  if (!isDriverMissing()) return;
  mDevice->logError("The kernel driver " + mDriver +
                    " does not have the printer's interface back. Unplug the printer from USB and "
                    "plug it in again to print.");
}

IOReturn InterfaceSession::clearStall(const UsbEndpointDescription& endpoint) {
  const IOReturn claimed = claimAgain();
  if (claimed != kIOReturnSuccess) return claimed;
  return resultOfClearHalt(libusb_clear_halt(mOpen->handle(), endpoint.address));
}

IOReturn InterfaceSession::submit(const Request& request) {
  const IOReturn claimed = claimAgain();
  if (claimed != kIOReturnSuccess) return claimed;
  if (request.size > static_cast<std::uint32_t>(std::numeric_limits<int>::max())) {
    return kIOReturnNoMemory;
  }
  const std::uint8_t type = request.endpoint.properties.transferType;
  if (type != LIBUSB_TRANSFER_TYPE_BULK && type != LIBUSB_TRANSFER_TYPE_INTERRUPT) {
    return kIOReturnUnsupported;
  }
  libusb_transfer* const transfer = libusb_alloc_transfer(0);
  if (transfer == nullptr) return kIOReturnNoMemory;
  Transfer& started = mInFlight.emplace_back(
      Transfer{this, {transfer, libusb_free_transfer}, request.callback, request.refCon});
  libusb_fill_bulk_transfer(transfer, mOpen->handle(), request.endpoint.address,
                            static_cast<unsigned char*>(request.buffer),
                            static_cast<int>(request.size), transferEnded, &started,
                            request.timeout);
  transfer->type = type;
  const IOReturn result = resultOfCall(libusb_submit_transfer(transfer));
  if (result != kIOReturnSuccess) mInFlight.pop_back();
  return result;
}

void InterfaceSession::transferEnded(libusb_transfer* transfer) {
  auto* const ended = static_cast<Transfer*>(transfer->user_data);
  InterfaceSession& session = *ended->session;
  if (!session.mEnding) {
    const bool isCutOff =
        transfer->status == LIBUSB_TRANSFER_CANCELLED && session.mDevice->isGone();
    const IOReturn result = isCutOff ? kIOReturnNoDevice : resultOfTransfer(*transfer);
    const auto count = static_cast<std::uintptr_t>(transfer->actual_length);
    session.deliver([callback = ended->callback, refCon = ended->refCon, result, count] {
      // NOLINTNEXTLINE(performance-no-int-to-ptr): the number takes the place of a pointer
      callback(refCon, result, reinterpret_cast<void*>(count));
    });
  }
  session.mInFlight.remove_if([ended](const Transfer& each) { return &each == ended; });
}

void InterfaceSession::deliver(std::function<void()> completion) {
  if (mRunLoop == nullptr) {
    mUndelivered.push_back(std::move(completion));
    return;
  }
  mRunLoop->callLater([alive = std::weak_ptr<bool>(mAlive), completion = std::move(completion)] {
    if (!alive.expired()) completion();
  });
}

void InterfaceSession::addTo(RunLoop& runLoop) {
  mRunLoop = &runLoop;
  for (std::function<void()>& completion : std::exchange(mUndelivered, {})) {
    deliver(std::move(completion));
  }
}

}  // namespace platform
