#include "FakeUsbRegistry.h"

#include <algorithm>
#include <cstring>

#include "FakeUsbObjects.h"
#include "platform/RunLoop.h"

using platform::IOReturn;
using platform::kIOReturnSuccess;

namespace {

bool isWanted(const FakeUsbEntry& entry, const platform::MatchingDictionary& matching) {
  if (!entry.isDevice || !entry.attached) return false;
  if (matching.className.utf8() != "IOUSBDevice") return false;
  return std::all_of(matching.properties.entries.begin(), matching.properties.entries.end(),
                     [&entry](const auto& wanted) {
                       const std::string_view key = std::get<platform::Text>(wanted.first).utf8();
                       const std::uint16_t own =
                           key == "idVendor" ? entry.device.vendorId : entry.device.productId;
                       const auto& number = std::get<platform::PropertyNumber>(wanted.second);
                       return number.width == 2 ? static_cast<std::uint16_t>(number.value) == own
                                                : number.value == own;
                     });
}

}  // namespace

FakeUsbRegistry::FakeUsbRegistry() = default;
FakeUsbRegistry::~FakeUsbRegistry() = default;

platform::io_object_t FakeUsbRegistry::newObject(const std::string& label) {
  const auto number = static_cast<platform::io_object_t>(mLabels.size() + 1);
  mLabels[number] = label;
  mReferences[number] = 0;
  return number;
}

platform::io_service_t FakeUsbRegistry::addEntry(std::shared_ptr<FakeUsbEntry> entry) {
  const platform::io_service_t number = newObject(entry->label);
  entry->number = number;
  mEntries[number] = std::move(entry);
  return number;
}

platform::io_iterator_t FakeUsbRegistry::newIterator(std::vector<platform::io_service_t> entries) {
  const platform::io_iterator_t number =
      newObject("iterator" + std::to_string(++mCounters["iterator"]));
  mReferences[number] = 1;
  for (const platform::io_service_t each : entries) ++mReferences.at(each);
  mIterators[number].assign(entries.begin(), entries.end());
  return number;
}

std::shared_ptr<FakeUsbEntry> FakeUsbRegistry::entry(platform::io_registry_entry_t number) const {
  return mEntries.at(number);
}

std::shared_ptr<FakeUsbEntry> FakeUsbRegistry::find(platform::io_registry_entry_t number) const {
  const auto found = mEntries.find(number);
  if (found == mEntries.end()) return nullptr;
  const FakeUsbEntry& entry = *found->second;
  const bool isKnown = entry.attached || mReferences.at(number) != 0 || find(entry.parent);
  return isKnown ? found->second : nullptr;
}

std::string FakeUsbRegistry::label(platform::io_object_t object) const {
  const auto found = mLabels.find(object);
  return found == mLabels.end() ? "unknown object" : found->second;
}

std::vector<platform::io_service_t> FakeUsbRegistry::matchingEntries(
    const platform::MatchingDictionary& matching) const {
  std::vector<platform::io_service_t> found;
  for (const auto& [number, entry] : mEntries) {
    if (isWanted(*entry, matching)) found.push_back(number);
  }
  return found;
}

platform::io_service_t FakeUsbRegistry::attach(const FakeUsbDevice& device) {
  auto entry = std::make_shared<FakeUsbEntry>();
  entry->label = device.label;
  entry->isDevice = true;
  entry->device = device;
  const platform::io_service_t number = addEntry(entry);
  std::map<std::uint16_t, int> ofClass;
  for (const FakeUsbInterface& interface : device.interfaces) {
    auto inner = std::make_shared<FakeUsbEntry>();
    inner->label = device.label + "/" + std::to_string(interface.interfaceClass);
    const int count = ++ofClass[interface.interfaceClass];
    if (count > 1) inner->label += "#" + std::to_string(count);
    inner->interface = interface;
    inner->parent = number;
    entry->interfaces.push_back(addEntry(inner));
  }
  arrive(number);
  return number;
}

platform::io_service_t FakeUsbRegistry::interfaceOf(platform::io_service_t device,
                                                    std::size_t index) const {
  return entry(device)->interfaces.at(index);
}

void FakeUsbRegistry::announceAgain(platform::io_service_t service) { arrive(service); }

void FakeUsbRegistry::arrive(platform::io_service_t service) {
  for (Match& match : mMatches) {
    if (!isWanted(*entry(service), match.matching)) continue;
    mIterators.at(match.iterator).push_back(service);
    ++mReferences.at(service);
    if (!match.armed || match.port == nullptr || match.port->runLoop() == nullptr) continue;
    match.armed = false;
    match.port->runLoop()->callLater([this, iterator = match.iterator] {
      for (const Match& current : mMatches) {
        if (current.iterator != iterator || current.port == nullptr) continue;
        current.callback(current.refCon, iterator);
        return;
      }
    });
  }
}

void FakeUsbRegistry::detach(platform::io_service_t service) {
  entry(service)->attached = false;
  for (const platform::io_service_t number : entry(service)->interfaces) {
    entry(number)->attached = false;
  }
  endAll([](const FakeUsbTransfer& transfer) { return !transfer.object->isAttached(); },
         platform::kIOReturnNoDevice);
  sendMessage(service, platform::kIOMessageServiceIsTerminated);
}

void FakeUsbRegistry::claimElsewhere(platform::io_service_t interface, bool isClaimed) {
  entry(interface)->isClaimedElsewhere = isClaimed;
}

void FakeUsbRegistry::sendMessage(platform::io_service_t service, std::uint32_t messageType) {
  for (const Interest& interest : mInterests) {
    if (interest.service != service || interest.port == nullptr) continue;
    if (interest.port->runLoop() == nullptr) continue;
    interest.port->runLoop()->callLater([this, messageType, notification = interest.notification] {
      for (const Interest& current : mInterests) {
        if (current.notification != notification || current.port == nullptr) continue;
        current.callback(current.refCon, current.service, messageType, nullptr);
        return;
      }
    });
  }
}

void FakeUsbRegistry::script(const std::string& call, IOReturn result, bool withObject) {
  mRecord.script(call, {result, withObject});
}

std::vector<std::string> FakeUsbRegistry::problems() const {
  std::vector<std::string> problems = mRecord.problems();
  for (const auto& [object, count] : mReferences) {
    if (count != 0) {
      problems.push_back(mLabels.at(object) + " has " + std::to_string(count) + " references");
    }
  }
  return problems;
}

int FakeUsbRegistry::references(platform::io_object_t object) const {
  return mReferences.at(object);
}

bool FakeUsbRegistry::isOpen(platform::io_service_t service) const {
  const auto asked = entry(service);
  return asked->openedBy != nullptr || asked->wholeOpenedBy != nullptr;
}

std::shared_ptr<FakeUsbTransfer> FakeUsbRegistry::oldest() {
  if (!mTransfers.empty()) return mTransfers.front();
  mRecord.complain("no transfer is under way");
  return nullptr;
}

void FakeUsbRegistry::end(const std::shared_ptr<FakeUsbTransfer>& transfer, IOReturn result,
                          std::size_t numBytes) {
  if (!transfer) return;
  std::erase(mTransfers, transfer);
  transfer->timer.reset();
  transfer->object->deliver(transfer, result, numBytes);
}

void FakeUsbRegistry::endAll(const std::function<bool(const FakeUsbTransfer&)>& isMeant,
                             IOReturn result) {
  const std::deque<std::shared_ptr<FakeUsbTransfer>> transfers = mTransfers;
  for (const std::shared_ptr<FakeUsbTransfer>& transfer : transfers) {
    if (isMeant(*transfer)) end(transfer, result, 0);
  }
}

void FakeUsbRegistry::completeRead(const std::shared_ptr<FakeUsbTransfer>& transfer,
                                   const std::string& bytes) {
  if (!transfer) return;
  if (!transfer->isRead) return mRecord.complain("the transfer is a write");
  if (bytes.size() > transfer->size) return mRecord.complain("too many bytes for the transfer");
  std::memcpy(transfer->target, bytes.data(), bytes.size());
  end(transfer, kIOReturnSuccess, bytes.size());
}

void FakeUsbRegistry::completeWrite(const std::shared_ptr<FakeUsbTransfer>& transfer,
                                    std::size_t numBytes) {
  if (!transfer) return;
  if (transfer->isRead) return mRecord.complain("the transfer is a read");
  end(transfer, kIOReturnSuccess, numBytes);
}

void FakeUsbRegistry::completeRead(const std::string& bytes) { completeRead(oldest(), bytes); }

void FakeUsbRegistry::completeWrite(std::size_t numBytes) { completeWrite(oldest(), numBytes); }

void FakeUsbRegistry::stall(platform::io_service_t interface, std::uint8_t pipe) {
  entry(interface)->stalledPipes.insert(pipe);
  endAll(
      [&](const FakeUsbTransfer& transfer) {
        return transfer.object->isOf(interface) && transfer.pipe == pipe;
      },
      platform::kIOUSBPipeStalled);
}

void FakeUsbRegistry::failTransfer(IOReturn result) { end(oldest(), result, 0); }

void FakeUsbRegistry::claimCompletion(std::size_t numBytes) {
  end(oldest(), kIOReturnSuccess, numBytes);
}

void FakeUsbRegistry::forgetPort(const FakeUsbPort& port) {
  for (Match& match : mMatches) {
    if (match.port == &port) match.port = nullptr;
  }
  for (Interest& interest : mInterests) {
    if (interest.port == &port) interest.port = nullptr;
  }
}
