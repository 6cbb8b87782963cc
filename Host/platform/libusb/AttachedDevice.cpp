#include "platform/libusb/AttachedDevice.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/libusb/GiveBackAtExit.h"
#include "platform/libusb/InterfaceHolders.h"
#include "platform/libusb/LibusbResults.h"
#include "platform/libusb/SysfsAttribute.h"

namespace platform {
namespace {

bool isDriverless(const UsbInterfaceDescription& interface) {
  return interface.interfaceClass == LIBUSB_CLASS_PRINTER &&
         readSysfsDriver(interface.directory).empty();
}

void connectDriverless(int node, const UsbDeviceDescription& description) {
  for (const UsbInterfaceDescription& interface : description.interfaces) {
    if (isDriverless(interface)) connectKernelDriver(node, interface.number);
  }
}

}  // namespace

OpenDevice::OpenDevice(int node, libusb_device_handle* handle,
                       const UsbDeviceDescription& description)
    : mNode(node), mHandle(handle), mDescription(description) {
  // Printers belong to usblp until they are claimed, and again from their release on.
  libusb_set_auto_detach_kernel_driver(handle, 1);
}

OpenDevice::~OpenDevice() { close(); }

IOReturn OpenDevice::claim(std::uint8_t interface) {
  giveBackAtExit(mNode, interface);
  const IOReturn result = resultOfCall(libusb_claim_interface(mHandle, interface));
  if (result == kIOReturnSuccess) {
    mClaims[interface].isLent = false;
  } else {
    dropFromExit(mNode, interface);
  }
  return result;
}

void OpenDevice::release(std::uint8_t interface) {
  const bool isClaimed = hasClaimed(interface);
  mClaims.erase(interface);
  if (!isClaimed) return;
  libusb_release_interface(mHandle, interface);
  dropFromExit(mNode, interface);
}

void OpenDevice::lend(std::uint8_t interface) {
  libusb_set_auto_detach_kernel_driver(mHandle, 0);
  libusb_release_interface(mHandle, interface);
  libusb_set_auto_detach_kernel_driver(mHandle, 1);
  dropFromExit(mNode, interface);
  mClaims.at(interface).isLent = true;
}

void OpenDevice::setUser(std::uint8_t interface, InterfaceUser& user) {
  mClaims.at(interface).user = &user;
}

bool OpenDevice::hasClaimed(std::uint8_t interface) const {
  const auto found = mClaims.find(interface);
  return found != mClaims.end() && !found->second.isLent;
}

void OpenDevice::endTransfers() {
  for (const auto& [interface, claim] : mClaims) {
    if (claim.user != nullptr) claim.user->endTransfers();
  }
}

void OpenDevice::giveBack() {
  for (const auto& [interface, claim] : mClaims) {
    if (claim.user != nullptr) claim.user->giveBack();
  }
}

void OpenDevice::close() {
  if (mHandle == nullptr) return;
  endTransfers();
  while (!mClaims.empty()) release(mClaims.begin()->first);
  connectDriverless(mNode, mDescription);
  libusb_close(std::exchange(mHandle, nullptr));
  ::close(mNode);
}

AttachedDevice::AttachedDevice(std::shared_ptr<LibusbContext> context, LibusbDevice device,
                               UsbDeviceDescription description, ErrorReports reports)
    : mContext(std::move(context)),
      mDevice(std::move(device)),
      mDescription(std::move(description)),
      mReports(std::move(reports)) {}

void AttachedDevice::setGone() {
  mGone = true;
  if (const auto opened = mOpen.lock()) opened->close();
}

std::string AttachedDevice::node() const {
  std::array<char, sizeof "/dev/bus/usb/BBB/DDD"> name;
  static_cast<void>(std::snprintf(name.data(), name.size(), "/dev/bus/usb/%03d/%03d",
                                  libusb_get_bus_number(mDevice.get()),
                                  libusb_get_device_address(mDevice.get())));
  return name.data();
}

int AttachedDevice::openNode() const { return ::open(node().c_str(), O_RDWR | O_CLOEXEC); }

// The descriptor is this program's own rather than libusb's, since it has to be known at the
// program's end.
IOReturn AttachedDevice::open(std::shared_ptr<OpenDevice>& opened) {
  if (mGone) return kIOReturnNoDevice;
  opened = mOpen.lock();
  if (opened) return kIOReturnSuccess;
  const int node = openNode();
  if (node < 0) return resultOfErrno(errno);
  libusb_device_handle* handle = nullptr;
  const IOReturn result = mContext->wrap(node, handle);
  if (result != kIOReturnSuccess) {
    ::close(node);
    return result;
  }
  opened = std::make_shared<OpenDevice>(node, handle, mDescription);
  mOpen = opened;
  return kIOReturnSuccess;
}

IOReturn AttachedDevice::claim(OpenDevice& opened, const UsbInterfaceDescription& interface) const {
  const IOReturn result = opened.claim(interface.number);
  if (result == kIOReturnExclusiveAccess) logHolders(interface);
  return result;
}

void AttachedDevice::logHolders(const UsbInterfaceDescription& interface) const {
  if (!mReports.log) return;
  for (const InterfaceHolder& holder :
       findInterfaceHolders(interface.directory, node(), mReports.searchTime)) {
    mReports.log(describe(holder));
  }
}

void AttachedDevice::logError(const std::string& entry) const {
  if (mReports.log) mReports.log(entry);
}

void AttachedDevice::giveBack() {
  if (const auto opened = mOpen.lock()) opened->giveBack();
}

IOReturn AttachedDevice::openWhole(std::shared_ptr<WholeDevice>& opened) {
  if (mGone) return kIOReturnNoDevice;
  if (!mWhole.expired()) return kIOReturnExclusiveAccess;
  const auto whole = std::make_shared<WholeDevice>();
  const IOReturn result = open(whole->open);
  if (result != kIOReturnSuccess) return result;
  if (isClaimedElsewhere(*whole->open)) return kIOReturnExclusiveAccess;
  mWhole = opened = whole;
  return kIOReturnSuccess;
}

bool AttachedDevice::isClaimedElsewhere(const OpenDevice& opened) const {
  return std::any_of(mDescription.interfaces.begin(), mDescription.interfaces.end(),
                     [&opened](const UsbInterfaceDescription& interface) {
                       return !opened.hasClaimed(interface.number) &&
                              readSysfsDriver(interface.directory) == kUserSpaceDriver;
                     });
}

IOReturn AttachedDevice::reset(const WholeDevice& opened) {
  if (mGone) return kIOReturnNoDevice;
  // libusb would take those that the reset cuts off for complete.
  opened.open->endTransfers();
  const int result = libusb_reset_device(opened.open->handle());
  // The device has changed so much that the kernel itself lets it leave and come back.
  if (result == LIBUSB_ERROR_NOT_FOUND) return kIOReturnSuccess;
  if (result == LIBUSB_SUCCESS) mContext->announceAnew(mDevice);
  return resultOfCall(result);
}

void AttachedDevice::connectKernelDrivers() const {
  if (std::none_of(mDescription.interfaces.begin(), mDescription.interfaces.end(), isDriverless)) {
    return;
  }
  const int node = openNode();
  if (node < 0) return;
  connectDriverless(node, mDescription);
  ::close(node);
}

}  // namespace platform
