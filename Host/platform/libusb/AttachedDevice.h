// One device, from its arrival until nobody refers to it any more: what is known of it, and the one
// libusb handle that all openings of its interfaces share. Owned together by the device's entries
// and by the I/O objects made for them.
#pragma once

#include <libusb-1.0/libusb.h>

#include <cstdint>
#include <memory>
#include <set>

#include "LibusbContext.h"
#include "UsbDescription.h"

namespace platform {

// The open device; closed with the last of its users. Claims one interface once.
class OpenDevice {
 public:
  explicit OpenDevice(libusb_device_handle* handle) : mHandle(handle) {}
  ~OpenDevice();
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;

  libusb_device_handle* handle() const { return mHandle; }

  // Takes the interface from the kernel's driver, if one has it, and gives it back.
  IOReturn claim(std::uint8_t interface);
  void release(std::uint8_t interface);

 private:
  libusb_device_handle* mHandle;
  std::set<std::uint8_t> mClaimed;
};

class AttachedDevice {
 public:
  AttachedDevice(std::shared_ptr<LibusbContext> context, LibusbDevice device,
                 UsbDeviceDescription description);

  const UsbDeviceDescription& description() const { return mDescription; }
  LibusbContext& context() const { return *mContext; }

  // Once it has gone, nothing is asked of it.
  void setGone() { mGone = true; }
  bool isGone() const { return mGone; }

  // The handle that is open already, or a new one.
  IOReturn open(std::shared_ptr<OpenDevice>& opened);

  // Makes the device start over; it leaves, and comes back as another one.
  IOReturn reset(OpenDevice& opened);

 private:
  std::shared_ptr<LibusbContext> mContext;  // ends after the device
  LibusbDevice mDevice;
  UsbDeviceDescription mDescription;
  std::weak_ptr<OpenDevice> mOpen;
  bool mGone = false;
};

}  // namespace platform
