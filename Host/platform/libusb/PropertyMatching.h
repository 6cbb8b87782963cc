// What the registry does with the properties of its entries: it finds one by its key, and compares
// them with those that a wanted device is to have.
#pragma once

#include <optional>
#include <string_view>

#include "platform/PropertyList.h"
#include "platform/UsbRegistry.h"

namespace platform {

// Whether a device with these properties is what `matching` looks for.
bool isMatching(const MatchingDictionary& matching, const PropertyDictionary& properties);

std::optional<PropertyValue> findProperty(const PropertyDictionary& properties,
                                          std::string_view key);

}  // namespace platform
