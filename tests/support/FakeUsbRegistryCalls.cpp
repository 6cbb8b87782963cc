// The operations of the surface; FakeUsbRegistry.cpp has what tests use.
#include <algorithm>
#include <string_view>

#include "FakeUsbObjects.h"
#include "FakeUsbRegistry.h"

using platform::IOReturn;
using platform::kIOReturnSuccess;

namespace {

std::string describe(const platform::MatchingDictionary& matching) {
  std::string text(matching.className.utf8());
  for (const auto& [key, value] : matching.properties.entries) {
    const auto& number = std::get<platform::PropertyNumber>(value);
    text += " " + std::string(std::get<platform::Text>(key).utf8()) + "=" +
            std::to_string(number.value) + ":" + std::to_string(number.width);
  }
  return text;
}

std::optional<platform::PropertyValue> findProperty(const platform::PropertyDictionary& properties,
                                                    std::string_view key) {
  for (const auto& [name, value] : properties.entries) {
    const auto* text = std::get_if<platform::Text>(&name);
    if (text != nullptr && text->utf8() == key) return value;
  }
  return std::nullopt;
}

// A device goes by its product's name.
std::string nameOf(const FakeUsbEntry& entry) {
  if (!entry.isDevice) return entry.interface.name;
  const auto product = findProperty(entry.properties(), "USB Product Name");
  const auto* text = product ? std::get_if<platform::Text>(&*product) : nullptr;
  return text != nullptr ? std::string(text->utf8()) : "IOUSBDevice";
}

}  // namespace

void FakeUsbRegistry::retain(platform::io_object_t object) {
  mRecord.note("retain " + label(object));
  ++mReferences.at(object);
}

void FakeUsbRegistry::release(platform::io_object_t object) {
  mRecord.note("release " + label(object));
  if (mReferences.at(object) == 0) return mRecord.complain(label(object) + " released too often");
  unreference(object);
}

// What is released for good gives back the references that it has itself.
void FakeUsbRegistry::unreference(platform::io_object_t object) {
  if (--mReferences.at(object) != 0) return;
  if (const auto iterator = mIterators.extract(object)) {
    for (const platform::io_service_t left : iterator.mapped()) unreference(left);
  }
  std::erase_if(mMatches, [object](const Match& match) { return match.iterator == object; });
  const auto interest =
      std::find_if(mInterests.begin(), mInterests.end(),
                   [object](const Interest& each) { return each.notification == object; });
  if (interest == mInterests.end()) return;
  const platform::io_service_t service = interest->service;
  mInterests.erase(interest);
  unreference(service);
}

platform::io_object_t FakeUsbRegistry::iteratorNext(platform::io_iterator_t iterator) {
  if (iterator == 0) return 0;
  mRecord.note("iteratorNext " + label(iterator));
  const auto found = mIterators.find(iterator);
  if (found == mIterators.end()) {
    mRecord.complain(label(iterator) + " used after its release");
    return 0;
  }
  if (found->second.empty()) {
    for (Match& match : mMatches) {
      if (match.iterator == iterator) match.armed = true;
    }
    return 0;
  }
  const platform::io_service_t next = found->second.front();
  found->second.pop_front();
  return next;  // with the iterator's reference
}

IOReturn FakeUsbRegistry::entryName(platform::io_registry_entry_t number, std::string& name) {
  const auto found = find(number);
  const auto answer = mRecord.note("entryName " + label(number),
                                   found ? kIOReturnSuccess : platform::kIOReturnBadArgument);
  if (answer.withObject && found) name = nameOf(*found);
  return answer.result;
}

std::optional<platform::PropertyValue> FakeUsbRegistry::property(
    platform::io_registry_entry_t number, const char* key) {
  mRecord.note("property " + label(number) + " " + key);
  const auto found = find(number);
  return found ? findProperty(found->properties(), key) : std::nullopt;
}

IOReturn FakeUsbRegistry::properties(platform::io_registry_entry_t number,
                                     platform::PropertyDictionary& dictionary) {
  const auto found = find(number);
  const auto answer = mRecord.note("properties " + label(number),
                                   found ? kIOReturnSuccess : platform::kIOReturnBadArgument);
  if (answer.withObject && found) dictionary = found->properties();
  return answer.result;
}

std::optional<platform::MatchingDictionary> FakeUsbRegistry::serviceMatching(
    const char* className) {
  const bool isKnown = std::string_view(className) == "IOUSBDevice";
  const auto answer = mRecord.note(std::string("serviceMatching ") + className,
                                   isKnown ? kIOReturnSuccess : platform::kIOReturnUnsupported);
  if (!answer.withObject) return std::nullopt;
  return platform::MatchingDictionary{platform::Text::fromUtf8(className), {}};
}

IOReturn FakeUsbRegistry::matchingServices(const platform::MatchingDictionary& matching,
                                           platform::io_iterator_t& iterator) {
  const auto answer = mRecord.note("matchingServices " + describe(matching));
  if (answer.withObject) iterator = newIterator(matchingEntries(matching));
  return answer.result;
}

std::unique_ptr<platform::UsbNotificationPort> FakeUsbRegistry::createNotificationPort() {
  mRecord.note("createNotificationPort");
  return std::make_unique<FakeUsbPort>(*this);
}

IOReturn FakeUsbRegistry::addMatchingNotification(platform::UsbNotificationPort& port,
                                                  const char* type,
                                                  const platform::MatchingDictionary& matching,
                                                  platform::IOServiceMatchingCallback callback,
                                                  void* refCon, platform::io_iterator_t& iterator) {
  const bool isKnown = std::string_view(type) == "IOServiceFirstMatch";
  const auto answer =
      mRecord.note(std::string("addMatchingNotification ") + type + " " + describe(matching),
                   isKnown ? kIOReturnSuccess : platform::kIOReturnUnsupported);
  if (!answer.withObject) return answer.result;
  iterator = newIterator(matchingEntries(matching));
  mMatches.push_back(
      {iterator, &dynamic_cast<FakeUsbPort&>(port), matching, callback, refCon, false});
  return answer.result;
}

IOReturn FakeUsbRegistry::addInterestNotification(platform::UsbNotificationPort& port,
                                                  platform::io_service_t service, const char* type,
                                                  platform::IOServiceInterestCallback callback,
                                                  void* refCon,
                                                  platform::io_object_t& notification) {
  const auto found = find(service);
  IOReturn usual = found ? kIOReturnSuccess : platform::kIOReturnBadArgument;
  if (found && std::string_view(type) != "IOGeneralInterest") {
    usual = platform::kIOReturnUnsupported;
  }
  const auto answer = mRecord.note("addInterestNotification " + label(service) + " " + type, usual);
  if (!answer.withObject || !found) return answer.result;
  notification = newObject("notification" + std::to_string(++mCounters["notification"]));
  mReferences[notification] = 1;
  ++mReferences.at(service);
  mInterests.push_back(
      {notification, &dynamic_cast<FakeUsbPort&>(port), service, callback, refCon});
  if (!found->attached) sendMessage(service, platform::kIOMessageServiceIsTerminated);
  return answer.result;
}

IOReturn FakeUsbRegistry::createPlugIn(platform::io_service_t service, ClientType type,
                                       std::unique_ptr<platform::UsbPlugIn>& plugIn) {
  const bool isForDevice = type == ClientType::Device;
  const auto found = find(service);
  const auto answer = mRecord.note(
      "createPlugIn " + label(service) + (isForDevice ? " device" : " interface"),
      found && found->isDevice == isForDevice ? kIOReturnSuccess : platform::kIOReturnBadArgument);
  if (answer.withObject && found) plugIn = std::make_unique<FakeUsbPlugIn>(*this, found);
  return answer.result;
}
