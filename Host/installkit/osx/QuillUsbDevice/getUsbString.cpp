#include "getUsbString.h"

#include <map>
#include <optional>
#include <variant>

#include "platform/Platform.h"
#include "registryText.h"

std::string getUsbString(platform::io_service_t service, UsbStringId id) {
  static const std::map<UsbStringId, std::string> keys = {
      {UsbProductName, "USB Product Name"},
      {UsbVendorName, "USB Vendor Name"},
      {UsbSerialNumber, "USB Serial Number"},
  };
  const auto key = keys.find(id);
  if (key == keys.end()) return {};

  const std::optional<platform::PropertyValue> property =
      platform::current().usb->property(service, key->second.c_str());
  if (!property) return {};
  const platform::Text* text = std::get_if<platform::Text>(&*property);
  return text == nullptr ? std::string() : registryText(*text);
}
