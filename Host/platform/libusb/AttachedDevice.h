// One device, from its arrival until nobody refers to it any more: what is known of it, and the one
// libusb handle that all openings of its interfaces share. Owned together by the device's entries
// and by the I/O objects made for them.
#pragma once

#include <libusb-1.0/libusb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/libusb/LibusbContext.h"
#include "platform/libusb/UsbDescription.h"

namespace platform {

// Who has an interface of an open device.
class InterfaceUser {
 public:
  virtual ~InterfaceUser() = default;

  // Lets no transfer be under way.
  virtual void endTransfers() = 0;

  // Lets the kernel's driver have the interface until its next use, unless a transfer is under way.
  virtual void giveBack() = 0;
};

// The open device; closed with the last of its users, or at the end of the device, if that is
// earlier. Each interface has one user. The kernel's driver has an interface again from its release
// on, while it is lent, or from the end of the program.
class OpenDevice {
 public:
  // Takes over the descriptor of the device's node, and the handle on it.
  OpenDevice(int node, libusb_device_handle* handle, const UsbDeviceDescription& description);
  ~OpenDevice();
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;

  // Null after the end of the device.
  libusb_device_handle* handle() const { return mHandle; }

  int node() const { return mNode; }

  // Takes the interface, which nobody has or which is lent, from the kernel's driver, if one has
  // it.
  IOReturn claim(std::uint8_t interface);
  void release(std::uint8_t interface);

  // Until its next claim, others may have the interface. The driver does not get it from here.
  void lend(std::uint8_t interface);

  // Of an interface that is claimed; must live until its release.
  void setUser(std::uint8_t interface, InterfaceUser& user);
  bool hasUser(std::uint8_t interface) const { return mClaims.contains(interface); }

  bool hasClaimed(std::uint8_t interface) const;

  // Of all users.
  void endTransfers();
  void giveBack();

  void close();

 private:
  struct Claim {
    InterfaceUser* user = nullptr;
    bool isLent = false;
  };

  int mNode;
  libusb_device_handle* mHandle;
  const UsbDeviceDescription& mDescription;
  std::map<std::uint8_t, Claim> mClaims;  // by interface
};

// The device as such, open for one user alone.
struct WholeDevice {
  std::shared_ptr<OpenDevice> open;
};

// What the log is told beside the results of calls.
struct ErrorReports {
  std::function<void(const std::string& entry)> log;  // at error level; may be null
  std::chrono::milliseconds searchTime;               // for who has an interface
};

class AttachedDevice {
 public:
  AttachedDevice(std::shared_ptr<LibusbContext> context, LibusbDevice device,
                 UsbDeviceDescription description, ErrorReports reports);

  const UsbDeviceDescription& description() const { return mDescription; }
  LibusbContext& context() const { return *mContext; }

  // Ends its sessions; from then on, nothing is asked of it.
  void setGone();
  bool isGone() const { return mGone; }

  // The handle that is open already, or a new one, which the device must outlive.
  IOReturn open(std::shared_ptr<OpenDevice>& opened);

  // Claims an interface of the open device. Who has it instead is logged.
  IOReturn claim(OpenDevice& opened, const UsbInterfaceDescription& interface) const;

  // Lends the interfaces that nobody uses.
  void giveBack();

  // Writes an entry to the log, at error level.
  void logError(const std::string& entry) const;

  // Fails while somebody has it open, or another program one of its interfaces.
  IOReturn openWhole(std::shared_ptr<WholeDevice>& opened);

  // Makes the device start over; it leaves, and comes back as another one.
  IOReturn reset(const WholeDevice& opened);

  // Lets the kernel's drivers have the printer interfaces that nobody has, as a program leaves them
  // that was killed. Quietly does nothing without a right on the device.
  void connectKernelDrivers() const;

 private:
  bool isClaimedElsewhere(const OpenDevice& opened) const;
  void logHolders(const UsbInterfaceDescription& interface) const;
  std::string node() const;
  int openNode() const;  // -1 with an errno

  std::shared_ptr<LibusbContext> mContext;  // ends after the device
  LibusbDevice mDevice;
  UsbDeviceDescription mDescription;
  ErrorReports mReports;
  std::weak_ptr<OpenDevice> mOpen;
  std::weak_ptr<WholeDevice> mWhole;
  bool mGone = false;
};

}  // namespace platform
