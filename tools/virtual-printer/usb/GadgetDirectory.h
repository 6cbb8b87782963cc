// One gadget in the kernel's configfs: identity, configuration, and the device controller that it
// is bound to, which is the plug of its cable. Removed from configfs at the end.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace virtualprinter {

struct UsbIdentity {
  std::uint16_t vendorId = 0x3A71;
  std::uint16_t productId = 0x0C28;
  std::string manufacturer;  // strings may be empty
  std::string product;
  std::string serial;
};

class GadgetDirectory {
 public:
  // Makes a gadget with one FunctionFS function named `function`. Throws std::runtime_error.
  GadgetDirectory(const UsbIdentity& identity, const std::string& function);
  ~GadgetDirectory();
  GadgetDirectory(const GadgetDirectory&) = delete;
  GadgetDirectory& operator=(const GadgetDirectory&) = delete;

  // Plugs in: to `controller`, or to any free one when that is empty. Returns its name.
  std::string bind(const std::string& controller);
  void unbind();

 private:
  void remove();

  std::filesystem::path mPath;
  std::filesystem::path mFunction;
};

}  // namespace virtualprinter
