#include "platform/libusb/LibusbRegistry.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/libusb/AttachedDevices.h"
#include "platform/libusb/LibusbPlugIn.h"
#include "platform/libusb/Notifications.h"
#include "platform/libusb/PropertyMatching.h"

namespace platform {
namespace {

class Registry : public LibusbRegistry {
 public:
  Registry(RunLoop& runLoop, ErrorReports reports)
      : mRunLoop(runLoop),
        mDevices(
            runLoop, mObjects, [this](io_service_t entry) { deviceArrived(entry); },
            [this](io_service_t entry) { deviceGone(entry); }, std::move(reports)) {}

  void retain(io_object_t object) override { mObjects->retain(object); }
  void release(io_object_t object) override { mObjects->release(object); }

  io_object_t iteratorNext(io_iterator_t iterator) override {
    const auto found = mObjects->find<EntryIterator>(iterator);
    return found ? found->next() : 0;
  }

  IOReturn entryName(io_registry_entry_t entry, std::string& name) override {
    const auto found = mObjects->find<RegistryEntry>(entry);
    if (!found) return kIOReturnBadArgument;
    name = found->name();
    return kIOReturnSuccess;
  }

  std::optional<PropertyValue> property(io_registry_entry_t entry, const char* key) override {
    const auto found = mObjects->find<RegistryEntry>(entry);
    return found ? findProperty(found->properties(), key) : std::nullopt;
  }

  IOReturn properties(io_registry_entry_t entry, PropertyDictionary& dictionary) override {
    const auto found = mObjects->find<RegistryEntry>(entry);
    if (!found) return kIOReturnBadArgument;
    dictionary = found->properties();
    return kIOReturnSuccess;
  }

  std::optional<MatchingDictionary> serviceMatching(const char* className) override {
    if (std::strcmp(className, "IOUSBDevice") != 0) return std::nullopt;
    return MatchingDictionary{Text::fromUtf8(className), {}};
  }

  IOReturn matchingServices(const MatchingDictionary& matching, io_iterator_t& iterator) override {
    const auto found = std::make_shared<EntryIterator>();
    addAttached(matching, *found);
    iterator = mObjects->add(found);
    return kIOReturnSuccess;
  }

  std::unique_ptr<UsbNotificationPort> createNotificationPort() override {
    return std::make_unique<OwnedNotificationPort>();
  }

  IOReturn addMatchingNotification(UsbNotificationPort& port, const char* type,
                                   const MatchingDictionary& matching,
                                   IOServiceMatchingCallback callback, void* refCon,
                                   io_iterator_t& iterator) override {
    auto* const owned = dynamic_cast<OwnedNotificationPort*>(&port);
    if (owned == nullptr) return kIOReturnBadArgument;
    if (std::strcmp(type, "IOServiceFirstMatch") != 0) return kIOReturnUnsupported;
    if (mDevices.hearing() != kIOReturnSuccess) return mDevices.hearing();
    const auto added =
        std::make_shared<MatchNotification>(owned->port(), matching, callback, refCon);
    addAttached(matching, *added);
    connectKernelDrivers(matching);
    iterator = mObjects->add(added);
    added->setNumber(iterator);
    std::erase_if(mMatches, [](const auto& each) { return each.expired(); });
    mMatches.push_back(added);
    return kIOReturnSuccess;
  }

  IOReturn addInterestNotification(UsbNotificationPort& port, io_service_t service,
                                   const char* type, IOServiceInterestCallback callback,
                                   void* refCon, io_object_t& notification) override {
    auto* const owned = dynamic_cast<OwnedNotificationPort*>(&port);
    const auto entry = mObjects->find<RegistryEntry>(service);
    if (owned == nullptr || !entry) return kIOReturnBadArgument;
    if (std::strcmp(type, "IOGeneralInterest") != 0) return kIOReturnUnsupported;
    const auto added = std::make_shared<InterestNotification>(
        owned->port(), ObjectReference::retain(mObjects, service), callback, refCon);
    notification = mObjects->add(added);
    std::erase_if(mInterests, [](const auto& each) { return each.expired(); });
    mInterests.push_back(added);
    if (entry->device()->isGone()) added->sendTerminated();
    return kIOReturnSuccess;
  }

  IOReturn createPlugIn(io_service_t service, ClientType type,
                        std::unique_ptr<UsbPlugIn>& plugIn) override {
    std::shared_ptr<RegistryEntry> entry;
    if (type == ClientType::Device) entry = mObjects->find<DeviceEntry>(service);
    if (type == ClientType::Interface) entry = mObjects->find<InterfaceEntry>(service);
    if (!entry) return kIOReturnBadArgument;
    plugIn = makeLibusbPlugIn(mObjects, std::move(entry));
    return kIOReturnSuccess;
  }

  void downloadBegan(const Text&, const Text&) noexcept override { mInDownload = true; }
  void phaseBegan(DownloadPhase, std::chrono::milliseconds) noexcept override {}
  void versionsKnown(unsigned int, unsigned int) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string&) noexcept override {}

  // The program is still about to act on the outcome.
  void downloadEnded(DownloadOutcome) noexcept override {
    mInDownload = false;
    mRunLoop.callLater([this, alive = std::weak_ptr<bool>(mAlive)] {
      if (!alive.expired() && !mInDownload) mDevices.giveBack();
    });
  }

 private:
  bool isMatchingEntry(io_service_t entry, const MatchingDictionary& matching) const {
    const auto found = mObjects->find<DeviceEntry>(entry);
    return found && isMatching(matching, found->properties());
  }

  void addAttached(const MatchingDictionary& matching, EntryIterator& iterator) const {
    for (const io_service_t entry : mDevices.entries()) {
      if (isMatchingEntry(entry, matching)) {
        iterator.add(ObjectReference::retain(mObjects, entry));
      }
    }
  }

  // What the program looks for may have been in its hands when it was killed.
  void connectKernelDrivers(const MatchingDictionary& matching) const {
    for (const io_service_t entry : mDevices.entries()) {
      if (isMatchingEntry(entry, matching)) {
        mObjects->find<DeviceEntry>(entry)->device()->connectKernelDrivers();
      }
    }
  }

  void deviceArrived(io_service_t entry) {
    for (const auto& each : mMatches) {
      const auto match = each.lock();
      if (match && isMatchingEntry(entry, match->matching())) {
        match->announce(ObjectReference::retain(mObjects, entry));
      }
    }
  }

  void deviceGone(io_service_t entry) {
    for (const auto& each : mInterests) {
      const auto interest = each.lock();
      if (interest && interest->service() == entry) interest->sendTerminated();
    }
  }

  std::shared_ptr<ObjectTable> mObjects = std::make_shared<ObjectTable>();
  std::vector<std::weak_ptr<MatchNotification>> mMatches;
  std::vector<std::weak_ptr<InterestNotification>> mInterests;
  RunLoop& mRunLoop;
  AttachedDevices mDevices;
  bool mInDownload = false;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};

}  // namespace

std::unique_ptr<LibusbRegistry> makeLibusbRegistry(
    RunLoop& runLoop, std::function<void(const std::string& entry)> logError,
    std::chrono::milliseconds searchTime) {
  return std::make_unique<Registry>(runLoop, ErrorReports{std::move(logError), searchTime});
}

}  // namespace platform
