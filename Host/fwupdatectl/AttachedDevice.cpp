#include "AttachedDevice.h"

#include <utility>

#include "Branding.h"
#include "QuillUsbDeviceFinderSync.h"

namespace {

class Finder final : private QuillUsbDeviceFinderSync {
 public:
  explicit Finder(const std::string& serial)
      : QuillUsbDeviceFinderSync(Branding::sUsbVendorId, Branding::sUsbProductId, serial) {}

  std::optional<QuillUsbDevice> find() {
    findAttached();
    return std::move(mFound);
  }

 private:
  void notifyDeviceFound(QuillUsbDevice& device) override {
    if (!mFound) mFound.emplace(device);
  }

  std::optional<QuillUsbDevice> mFound;
};

}  // namespace

std::optional<QuillUsbDevice> attachedDevice(const std::string& serial) {
  return Finder(serial).find();
}

platform::FailureCause causeOfAbsence() {
  return {nullptr,
          "The printer is no longer attached.",
          "Plug it in and switch it on, then try again.",
          {}};
}
