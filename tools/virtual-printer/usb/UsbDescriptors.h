// What the gadget says of its interfaces, in the form in which FunctionFS takes it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace virtualprinter {

// Which interfaces there are, and the order of their pipes.
struct UsbShape {
  bool hasPrinterInterface = true;  // class 7
  bool hasVendorInterface = true;   // class 255
  bool inPipeFirst = false;
};

// The endpoint files that FunctionFS makes for an interface: ep1, ep2, ...
struct UsbPipeFiles {
  std::string out;
  std::string in;
};

struct UsbDescriptors {
  std::vector<std::uint8_t> descriptors;
  std::vector<std::uint8_t> strings;
  UsbPipeFiles printer;  // names are empty where there is no such interface
  UsbPipeFiles vendor;
};

UsbDescriptors describeInterfaces(const UsbShape& shape);

}  // namespace virtualprinter
