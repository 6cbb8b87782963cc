// Says what a wanted device is: a vendor ID, a product ID and, optionally, a serial number. Owned
// by the finder that looks for it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/UsbRegistry.h"

class QuillUsbDeviceMatcher {
 public:
  // Any serial number will do.
  QuillUsbDeviceMatcher(unsigned short vendorId, unsigned short productId);
  QuillUsbDeviceMatcher(unsigned short vendorId, unsigned short productId,
                        const std::string& serialNum);

  // For the registry: vendor and product. Throws std::runtime_error.
  platform::MatchingDictionary getMatchingDictionary() const;

  // For what the registry found: the serial number, which must be equal byte for byte.
  bool isMatchingDevice(platform::io_service_t service) const;

 private:
  std::uint32_t mVendorId;
  std::uint32_t mProductId;
  std::string mSerialNum;  // empty: any
};
