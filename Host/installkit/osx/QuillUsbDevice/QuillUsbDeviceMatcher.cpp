#include "QuillUsbDeviceMatcher.h"

#include <cstring>
#include <optional>
#include <stdexcept>

#include "getUsbString.h"
#include "platform/Platform.h"

using platform::PropertyNumber;
using platform::Text;

QuillUsbDeviceMatcher::QuillUsbDeviceMatcher(unsigned short vendorId, unsigned short productId)
    : mVendorId(vendorId), mProductId(productId) {}

QuillUsbDeviceMatcher::QuillUsbDeviceMatcher(unsigned short vendorId, unsigned short productId,
                                             const std::string& serialNum)
    : mVendorId(vendorId), mProductId(productId), mSerialNum(serialNum) {}

platform::MatchingDictionary QuillUsbDeviceMatcher::getMatchingDictionary() const {
  std::optional<platform::MatchingDictionary> matching =
      platform::current().usb->serviceMatching("IOUSBDevice");
  if (!matching) throw std::runtime_error("Unable to obtain a matching dictionary.");

  // The two numbers differ in width: the vendor is what the first two bytes of the field hold in
  // the host's byte order, the product the whole field.
  std::int16_t vendor = 0;
  std::memcpy(&vendor, &mVendorId, sizeof vendor);
  std::int32_t product = 0;
  std::memcpy(&product, &mProductId, sizeof product);
  matching->properties.entries.emplace_back(Text::fromUtf8("idVendor"),
                                            PropertyNumber{vendor, sizeof vendor});
  matching->properties.entries.emplace_back(Text::fromUtf8("idProduct"),
                                            PropertyNumber{product, sizeof product});
  return *matching;
}

bool QuillUsbDeviceMatcher::isMatchingDevice(platform::io_service_t service) const {
  return mSerialNum.empty() || getUsbString(service, UsbSerialNumber) == mSerialNum;
}
