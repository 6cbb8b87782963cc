#include "GadgetDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <set>
#include <stdexcept>

#include "FileDescriptor.h"
#include "fail.h"

namespace virtualprinter {
namespace {

namespace fs = std::filesystem;

const fs::path kGadgets = "/sys/kernel/config/usb_gadget";
const fs::path kControllers = "/sys/class/udc";

// 0 or an errno. An attribute takes its value in one write.
int store(const fs::path& attribute, const std::string& value) {
  const FileDescriptor file(open(attribute.c_str(), O_WRONLY | O_CLOEXEC));
  if (!file) return errno;
  const std::string line = value + "\n";
  return write(file.get(), line.data(), line.size()) < 0 ? errno : 0;
}

void require(const fs::path& attribute, const std::string& value) {
  if (const int error = store(attribute, value)) fail(attribute.string(), error);
}

void makeDirectory(const fs::path& path) {
  std::error_code error;
  if (!fs::create_directory(path, error)) fail(path.string(), error.value());
}

std::string hex(std::uint16_t number) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%04x", number);
  return text;
}

}  // namespace

GadgetDirectory::GadgetDirectory(const UsbIdentity& identity, const std::string& function) {
  if (!fs::exists(kGadgets)) {
    throw std::runtime_error(
        "there are no USB gadgets here: they need the kernel modules libcomposite and usb_f_fs, a "
        "mounted configfs and root; a device controller in software is dummy_hcd");
  }
  mPath = kGadgets / ("virtual-printer." + std::to_string(getpid()));
  mFunction = mPath / "functions" / ("ffs." + function);
  try {
    makeDirectory(mPath);
    require(mPath / "idVendor", hex(identity.vendorId));
    require(mPath / "idProduct", hex(identity.productId));
    makeDirectory(mPath / "strings/0x409");
    require(mPath / "strings/0x409/manufacturer", identity.manufacturer);
    require(mPath / "strings/0x409/product", identity.product);
    require(mPath / "strings/0x409/serialnumber", identity.serial);
    makeDirectory(mFunction);
    makeDirectory(mPath / "configs/c.1");
    fs::create_directory_symlink(mFunction, mPath / "configs/c.1/printer");
  } catch (...) {
    remove();
    throw;
  }
}

GadgetDirectory::~GadgetDirectory() {
  unbind();
  remove();
}

void GadgetDirectory::remove() {
  std::error_code ignored;
  fs::remove(mPath / "configs/c.1/printer", ignored);
  for (const fs::path& part : {mPath / "configs/c.1", mFunction, mPath / "strings/0x409", mPath}) {
    rmdir(part.c_str());
  }
}

std::string GadgetDirectory::bind(const std::string& controller) {
  std::set<std::string> candidates;
  if (!controller.empty()) candidates.insert(controller);
  std::error_code ignored;
  for (const fs::directory_entry& each : fs::directory_iterator(kControllers, ignored)) {
    if (controller.empty()) candidates.insert(each.path().filename().string());
  }
  int error = ENODEV;
  for (const std::string& candidate : candidates) {
    error = store(mPath / "UDC", candidate);
    if (error == 0) return candidate;
  }
  fail(controller.empty() ? "no free USB device controller" : "USB device controller " + controller,
       error);
}

void GadgetDirectory::unbind() { store(mPath / "UDC", ""); }

}  // namespace virtualprinter
