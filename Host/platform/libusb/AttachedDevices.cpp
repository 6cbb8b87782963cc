#include "platform/libusb/AttachedDevices.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <utility>

namespace platform {
namespace {

// The kernel announces a device before it has chosen its configuration, and with it the interfaces.
// One that is still without after a second is told of as it is: nobody has authorized it. When
// somebody does, the kernel says so.
constexpr std::chrono::milliseconds kLookAgainAfter{20};
constexpr int kMaxLooks = 50;

}  // namespace

AttachedDevices::AttachedDevices(RunLoop& runLoop, std::shared_ptr<ObjectTable> objects,
                                 Handler arrived, Handler gone, ErrorReports reports)
    : mRunLoop(runLoop),
      mObjects(std::move(objects)),
      mContext(LibusbContext::create(runLoop)),
      mArrived(std::move(arrived)),
      mGone(std::move(gone)),
      mReports(std::move(reports)) {
  if (!mContext) return;
  // In this order no device is missed; one that arrives in between is told twice.
  mContext->setPlugHandler(
      [this](const LibusbDevice& device, bool isHere) { plugged(device, isHere); });
  mChanges = std::make_unique<InterfaceChanges>(runLoop, [this] { describeAgain(); });
  for (const LibusbDevice& device : mContext->attachedDevices()) deviceArrived(device);
}

AttachedDevices::~AttachedDevices() {
  if (mContext) mContext->setPlugHandler(nullptr);
}

IOReturn AttachedDevices::hearing() const {
  return mContext ? mContext->hearing() : kIOReturnSuccess;
}

std::vector<io_service_t> AttachedDevices::entries() const {
  std::vector<io_service_t> entries;
  for (const auto& [device, entry] : mPublished) entries.push_back(entry.number());
  return entries;
}

void AttachedDevices::giveBack() {
  for (const auto& [device, entry] : mPublished) {
    mObjects->find<DeviceEntry>(entry.number())->device()->giveBack();
  }
}

void AttachedDevices::plugged(const LibusbDevice& device, bool arrived) {
  if (arrived) {
    deviceArrived(device);
  } else {
    deviceLeft(device);
  }
}

void AttachedDevices::deviceArrived(const LibusbDevice& device) {
  const bool isKnown =
      std::any_of(mPublished.begin(), mPublished.end(),
                  [&device](const auto& each) { return each.first == device; }) ||
      std::any_of(mUnconfigured.begin(), mUnconfigured.end(),
                  [&device](const Unconfigured& each) { return each.device == device; });
  if (isKnown) return;
  UsbDeviceDescription description = describeUsbDevice(device.get());
  if (description.configured) {
    publish(device, std::move(description));
    return;
  }
  mUnconfigured.push_back({device, 1});
  if (!mTimer) mTimer = mRunLoop.startTimer(kLookAgainAfter, true, [this] { lookAgain(); });
}

void AttachedDevices::lookAgain() {
  for (Unconfigured& each : std::exchange(mUnconfigured, {})) {
    UsbDeviceDescription description = describeUsbDevice(each.device.get());
    // It has left, and libusb has yet to tell.
    if (!std::filesystem::exists(description.directory)) continue;
    if (description.configured || ++each.attempts > kMaxLooks) {
      publish(each.device, std::move(description));
    } else {
      mUnconfigured.push_back(std::move(each));
    }
  }
  if (mUnconfigured.empty()) mTimer.reset();
}

// One that has lost its configuration is on its way to another, or out.
void AttachedDevices::describeAgain() {
  std::vector<LibusbDevice> changed;
  for (const auto& [device, entry] : mPublished) {
    const auto found = mObjects->find<DeviceEntry>(entry.number());
    if (found && hasChanged(found->device()->description())) changed.push_back(device);
  }
  for (const LibusbDevice& device : changed) {
    deviceLeft(device);
    deviceArrived(device);
  }
}

void AttachedDevices::publish(const LibusbDevice& device, UsbDeviceDescription description) {
  const std::size_t interfaces = description.interfaces.size();
  const auto attached =
      std::make_shared<AttachedDevice>(mContext, device, std::move(description), mReports);
  const auto entry = std::make_shared<DeviceEntry>(attached);
  for (std::size_t index = 0; index < interfaces; ++index) {
    entry->interfaces().push_back(ObjectReference::adopt(
        mObjects, mObjects->add(std::make_shared<InterfaceEntry>(attached, index))));
  }
  const io_service_t number = mObjects->add(entry);
  mPublished.emplace_back(device, ObjectReference::adopt(mObjects, number));
  if (mArrived) mArrived(number);
}

void AttachedDevices::deviceLeft(const LibusbDevice& device) {
  std::erase_if(mUnconfigured,
                [&device](const Unconfigured& each) { return each.device == device; });
  if (mUnconfigured.empty()) mTimer.reset();
  const auto found = std::find_if(mPublished.begin(), mPublished.end(),
                                  [&device](const auto& each) { return each.first == device; });
  if (found == mPublished.end()) return;
  const ObjectReference entry = std::move(found->second);
  mPublished.erase(found);
  if (const auto gone = mObjects->find<DeviceEntry>(entry.number())) gone->device()->setGone();
  if (mGone) mGone(entry.number());
}

}  // namespace platform
