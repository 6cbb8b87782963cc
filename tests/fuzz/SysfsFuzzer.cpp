// Any bytes may stand in an attribute of a device, and any name in /proc: the attribute is what
// stands before its first zero and its line end, or nothing, and a name is shown in printable
// ASCII, no longer than a file's, and ends up in one line of the log.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "TemporaryDirectory.h"
#include "platform/ProcessName.h"
#include "platform/Text.h"
#include "platform/libusb/InterfaceHolders.h"
#include "platform/libusb/SysfsAttribute.h"
#include "require.h"

namespace {

namespace fs = std::filesystem;

// One process of a forged /proc that has the device open.
struct Tree {
  Tree() {
    fs::create_directories(directory.path() / "interface");
    fs::create_directories(directory.path() / "proc/77777777/fd");
    fs::create_symlink("/dev/bus/usb/001/002", directory.path() / "proc/77777777/fd/3");
  }

  void write(const char* file, const std::string& bytes) const {
    std::ofstream(directory.path() / file, std::ios::binary) << bytes;
  }

  TemporaryDirectory directory;
};

std::string withoutLineEnd(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

bool isPrintable(const std::string& text) {
  return std::ranges::all_of(text, [](char c) { return c >= 0x20 && c <= 0x7E; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Tree tree;
  const fs::path& root = tree.directory.path();
  const std::string bytes(data, data + size);

  tree.write("interface/product", bytes);
  const std::string expected = withoutLineEnd(bytes.substr(0, bytes.find('\0')));
  const platform::Text text = platform::readSysfsAttribute(root / "interface", "product");
  require(text.isNull() == platform::Text::fromUtf8(expected).isNull());
  require(text.isNull() || text.utf8() == expected);
  require(platform::readSysfsAttribute(root / "interface", "serial").isNull());

  tree.write("proc/77777777/comm", bytes);
  const std::string name = platform::programName(root / "proc/77777777");
  const std::string start = withoutLineEnd(bytes.substr(0, 255));
  require(isPrintable(name) && name.size() == start.size());
  for (std::size_t i = 0; i < name.size(); ++i) require(name[i] == start[i] || name[i] == '?');

  const auto holders = platform::findInterfaceHolders(
      root / "interface", "/dev/bus/usb/001/002", std::chrono::milliseconds(10000), root / "proc");
  require(holders.size() == 1);
  require(platform::describe(holders[0]) ==
          "The printer's interface is in use by " +
              (name.empty() ? "another program." : name + " (process 77777777)."));
  return 0;
}
