// What the kernel says of the devices on its USB bus, and what an administrator may tell it of
// them.
#pragma once

#include <filesystem>
#include <string>

// Of the device with that serial number; empty when there is none.
std::filesystem::path usbDevice(const std::string& serial = "VP000001");

// The name of the driver that has the printer's interface; empty for none.
std::string kernelDriver(const std::string& serial = "VP000001");

// The first line of an attribute.
std::string usbAttribute(const std::filesystem::path& attribute);
void setUsbAttribute(const std::filesystem::path& attribute, const std::string& value);

// Devices that are plugged in while it lives get no configuration until somebody authorizes them.
class AuthorizingNobody {
 public:
  AuthorizingNobody() { authorizeByDefault("0"); }
  ~AuthorizingNobody() { authorizeByDefault("1"); }
  AuthorizingNobody(const AuthorizingNobody&) = delete;
  AuthorizingNobody& operator=(const AuthorizingNobody&) = delete;

 private:
  static void authorizeByDefault(const std::string& value);
};
