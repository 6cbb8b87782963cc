// The operations of the surface; FakeUsbRegistry.cpp has what tests use.
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

}  // namespace

void FakeUsbRegistry::retain(platform::io_object_t object) {
  mRecord.note("retain " + mLabels.at(object));
  ++mReferences.at(object);
}

void FakeUsbRegistry::release(platform::io_object_t object) {
  mRecord.note("release " + mLabels.at(object));
  int& references = mReferences.at(object);
  if (references == 0) return mRecord.complain(mLabels.at(object) + " released too often");
  if (--references != 0) return;
  mIterators.erase(object);
  std::erase_if(mMatches, [object](const Match& match) { return match.iterator == object; });
  std::erase_if(mInterests,
                [object](const Interest& interest) { return interest.notification == object; });
}

platform::io_object_t FakeUsbRegistry::iteratorNext(platform::io_iterator_t iterator) {
  if (iterator == 0) return 0;
  mRecord.note("iteratorNext " + mLabels.at(iterator));
  const auto found = mIterators.find(iterator);
  if (found == mIterators.end()) {
    mRecord.complain(mLabels.at(iterator) + " used after its release");
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
  ++mReferences.at(next);
  return next;
}

IOReturn FakeUsbRegistry::entryName(platform::io_registry_entry_t number, std::string& name) {
  const auto answer = mRecord.note("entryName " + mLabels.at(number));
  if (answer.withObject) name = entry(number)->interface.name;
  return answer.result;
}

std::optional<platform::PropertyValue> FakeUsbRegistry::property(
    platform::io_registry_entry_t number, const char* key) {
  mRecord.note("property " + mLabels.at(number) + " " + key);
  for (const auto& [name, value] : entry(number)->device.properties.entries) {
    const auto* text = std::get_if<platform::Text>(&name);
    if (text != nullptr && text->utf8() == key) return value;
  }
  return std::nullopt;
}

IOReturn FakeUsbRegistry::properties(platform::io_registry_entry_t number,
                                     platform::PropertyDictionary& dictionary) {
  const auto answer = mRecord.note("properties " + mLabels.at(number));
  if (answer.withObject) {
    const FakeUsbEntry& found = *entry(number);
    dictionary = found.isDevice ? found.device.properties : found.interface.properties;
  }
  return answer.result;
}

std::optional<platform::MatchingDictionary> FakeUsbRegistry::serviceMatching(
    const char* className) {
  const auto answer = mRecord.note(std::string("serviceMatching ") + className);
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
  const auto answer =
      mRecord.note(std::string("addMatchingNotification ") + type + " " + describe(matching));
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
  const auto answer = mRecord.note("addInterestNotification " + mLabels.at(service) + " " + type);
  if (!answer.withObject) return answer.result;
  notification = newObject("notification" + std::to_string(++mCounters["notification"]));
  mReferences[notification] = 1;
  mInterests.push_back(
      {notification, &dynamic_cast<FakeUsbPort&>(port), service, callback, refCon});
  if (!entry(service)->attached) sendMessage(service, platform::kIOMessageServiceIsTerminated);
  return answer.result;
}

IOReturn FakeUsbRegistry::createPlugIn(platform::io_service_t service, ClientType type,
                                       std::unique_ptr<platform::UsbPlugIn>& plugIn) {
  const char* const client = type == ClientType::Device ? "device" : "interface";
  const auto answer = mRecord.note("createPlugIn " + mLabels.at(service) + " " + client);
  if (answer.withObject) plugIn = std::make_unique<FakeUsbPlugIn>(*this, entry(service));
  return answer.result;
}
