#include "AttachedDevice.h"

#include <utility>
#include <vector>

#include "Branding.h"
#include "QuillUsbDeviceFinderSync.h"

namespace {

// Compares the serial number itself: to the one that it stands on, none is any.
class Finder final : private QuillUsbDeviceFinderSync {
 public:
  explicit Finder(const Target& printer)
      : QuillUsbDeviceFinderSync(Branding::sUsbVendorId, Branding::sUsbProductId),
        mPrinter(printer) {}

  std::vector<QuillUsbDevice> find() {
    findAttached();
    return std::move(mFound);
  }

 private:
  void notifyDeviceFound(QuillUsbDevice& device) override {
    if (device.getSerialNum() == mPrinter.serial &&
        device.getManufacturer() + " " + device.getProduct() == mPrinter.name) {
      mFound.push_back(device);
    }
  }

  const Target& mPrinter;
  std::vector<QuillUsbDevice> mFound;
};

}  // namespace

std::optional<QuillUsbDevice> attachedDevice(const Target& printer,
                                             platform::FailureCause& whyNot) {
  const std::vector<QuillUsbDevice> found = Finder(printer).find();
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    whyNot = {nullptr,
              "The printer is no longer attached.",
              "Plug it in and switch it on, then try again.",
              {}};
  } else {
    whyNot = {nullptr,
              "Another attached printer cannot be told apart from this one.",
              "Unplug the other one, then try again.",
              {}};
  }
  return std::nullopt;
}
