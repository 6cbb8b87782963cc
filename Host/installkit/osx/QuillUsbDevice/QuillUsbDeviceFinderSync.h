// Looks once at what is attached and reports each wanted device. A receiver derives from it.
#pragma once

#include <memory>
#include <string>

#include "QuillUsbDevice.h"

class QuillUsbDeviceMatcher;

class QuillUsbDeviceFinderSync {
 public:
  QuillUsbDeviceFinderSync(unsigned short vendorId, unsigned short productId);
  QuillUsbDeviceFinderSync(unsigned short vendorId, unsigned short productId,
                           const std::string& serialNum);
  QuillUsbDeviceFinderSync(const QuillUsbDeviceFinderSync&) = delete;
  QuillUsbDeviceFinderSync& operator=(const QuillUsbDeviceFinderSync&) = delete;
  virtual ~QuillUsbDeviceFinderSync();

  virtual void notifyDeviceFound(QuillUsbDevice& device) = 0;

  // Calls notifyDeviceFound() for each wanted device that is attached now. Throws IoKitException,
  // and what notifyDeviceFound() throws.
  void findAttached();

 private:
  std::unique_ptr<QuillUsbDeviceMatcher> mMatcher;
};
