#include "platform/libusb/PropertyMatching.h"

#include <cstdint>

namespace platform {
namespace {

std::uint64_t asUnsigned(const PropertyNumber& number) {
  const auto value = static_cast<std::uint64_t>(number.value);
  return number.width >= sizeof value ? value
                                      : value & ((std::uint64_t{1} << (8 * number.width)) - 1);
}

bool isWantedValue(const PropertyValue& wanted, const PropertyValue& own) {
  const auto* const wantedNumber = std::get_if<PropertyNumber>(&wanted);
  const auto* const ownNumber = std::get_if<PropertyNumber>(&own);
  if (wantedNumber != nullptr && ownNumber != nullptr) {
    if (wantedNumber->width == 2) return asUnsigned(*wantedNumber) == asUnsigned(*ownNumber);
    return wantedNumber->value == static_cast<std::int64_t>(asUnsigned(*ownNumber));
  }
  const auto* const wantedText = std::get_if<Text>(&wanted);
  const auto* const ownText = std::get_if<Text>(&own);
  return wantedText != nullptr && ownText != nullptr && !wantedText->isNull() &&
         wantedText->utf8() == ownText->utf8();
}

}  // namespace

bool isMatching(const MatchingDictionary& matching, const PropertyDictionary& properties) {
  if (matching.className.utf8() != "IOUSBDevice") return false;
  for (const auto& [key, wanted] : matching.properties.entries) {
    const Text* const name = std::get_if<Text>(&key);
    if (name == nullptr) return false;
    const std::optional<PropertyValue> own = findProperty(properties, name->utf8());
    if (!own || !isWantedValue(wanted, *own)) return false;
  }
  return true;
}

std::optional<PropertyValue> findProperty(const PropertyDictionary& properties,
                                          std::string_view key) {
  for (const auto& [name, value] : properties.entries) {
    const Text* const text = std::get_if<Text>(&name);
    if (text != nullptr && text->utf8() == key) return value;
  }
  return std::nullopt;
}

}  // namespace platform
