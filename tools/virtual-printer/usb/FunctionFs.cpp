#include "FunctionFs.h"

#include <endian.h>
#include <fcntl.h>
#include <linux/usb/functionfs.h>
#include <poll.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>
#include <utility>

#include "fail.h"

namespace virtualprinter {
namespace {

// Requests of the printer class.
constexpr std::uint8_t kGetDeviceId = 0;
constexpr std::uint8_t kGetPortStatus = 1;
constexpr std::uint8_t kSoftReset = 2;
constexpr std::uint8_t kSelectedAndNoError = 0x18;

void store(int file, const std::vector<std::uint8_t>& bytes, const char* what) {
  if (write(file, bytes.data(), bytes.size()) < 0) fail(what);
}

}  // namespace

struct FunctionFs::Setup {
  bool toHost;
  bool ofClass;
  std::uint8_t request;
  std::size_t length;
};

FunctionFs::FunctionFs(EventLoop& loop, const std::string& function,
                       const UsbDescriptors& descriptors, Handlers handlers)
    : mHandlers(std::move(handlers)) {
  mount(function);
  try {
    mControl =
        FileDescriptor(::open((mDirectory / "ep0").c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
    if (!mControl) fail("the gadget's control endpoint");
    store(mControl.get(), descriptors.descriptors, "the gadget's descriptors");
    store(mControl.get(), descriptors.strings, "the gadget's strings");
  } catch (...) {
    mControl.reset();
    umount2(mDirectory.c_str(), MNT_DETACH);
    rmdir(mDirectory.c_str());
    throw;
  }
  mWatch = loop.watch(mControl.get(), POLLIN, [this](short) { readEvents(); });
}

FunctionFs::~FunctionFs() {
  mWatch.reset();
  mControl.reset();
  umount2(mDirectory.c_str(), MNT_DETACH);
  rmdir(mDirectory.c_str());
}

void FunctionFs::mount(const std::string& function) {
  std::string pattern =
      (std::filesystem::temp_directory_path() / "virtual-printer.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) fail(pattern);
  mDirectory = pattern;
  if (::mount(function.c_str(), mDirectory.c_str(), "functionfs", 0, nullptr) == 0) return;
  const int error = errno;
  rmdir(mDirectory.c_str());
  errno = error;
  fail("functionfs");
}

FileDescriptor FunctionFs::open(const std::string& endpoint) const {
  FileDescriptor file(::open((mDirectory / endpoint).c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
  if (!file) fail("the gadget's endpoint " + endpoint);
  return file;
}

void FunctionFs::readEvents() {
  std::array<usb_functionfs_event, 4> events;
  const ssize_t size = read(mControl.get(), events.data(), sizeof events);
  if (size < 0) return;
  const auto count = static_cast<std::size_t>(size) / sizeof(usb_functionfs_event);
  for (const usb_functionfs_event& event : std::span(events).first(count)) {
    const usb_ctrlrequest& request = event.u.setup;
    switch (event.type) {
      case FUNCTIONFS_ENABLE:
        mHandlers.enabled();
        break;
      case FUNCTIONFS_DISABLE:
      case FUNCTIONFS_UNBIND:
        mHandlers.disabled();
        break;
      case FUNCTIONFS_SETUP:
        answer({(request.bRequestType & USB_DIR_IN) != 0,
                (request.bRequestType & USB_TYPE_MASK) == USB_TYPE_CLASS, request.bRequest,
                le16toh(request.wLength)});
        break;
      default:
        break;
    }
  }
}

void FunctionFs::answer(const Setup& setup) {
  std::vector<std::uint8_t> bytes;
  if (setup.ofClass && setup.toHost && setup.request == kGetDeviceId) {
    const std::string id = mHandlers.deviceId();
    const std::size_t size = id.size() + 2;
    bytes = {static_cast<std::uint8_t>(size >> 8), static_cast<std::uint8_t>(size)};
    bytes.insert(bytes.end(), id.begin(), id.end());
  } else if (setup.ofClass && setup.toHost && setup.request == kGetPortStatus) {
    bytes = {kSelectedAndNoError};
  } else if (setup.ofClass && !setup.toHost && setup.request == kSoftReset) {
    [[maybe_unused]] const ssize_t acknowledged = read(mControl.get(), nullptr, 0);
    return;
  }
  // Going in the direction that the request does not go says that it is not known.
  ssize_t answered = 0;
  if (!bytes.empty()) {
    answered = write(mControl.get(), bytes.data(), std::min(bytes.size(), setup.length));
  } else if (setup.toHost) {
    answered = read(mControl.get(), nullptr, 0);
  } else {
    answered = write(mControl.get(), nullptr, 0);
  }
  // A host that has lost interest meanwhile is not the printer's concern.
  static_cast<void>(answered);
}

}  // namespace virtualprinter
