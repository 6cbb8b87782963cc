// Typed values of a device registry's property dictionaries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Text.h"

namespace platform {

struct PropertyDictionary;

// A signed number of its own type's width: an unsigned 0xFFFF of two bytes is -1.
struct PropertyNumber {
  std::int64_t value = 0;
  std::size_t width = 4;  // bytes: 2, 4 or 8

  bool operator==(const PropertyNumber&) const = default;
};

// A value of any type that the program does not translate; `type` is its readable description.
struct UntranslatedProperty {
  Text type;
};

// std::monostate is the null value. A dictionary is never null.
using PropertyValue = std::variant<std::monostate, Text, PropertyNumber, bool,
                                   std::shared_ptr<const PropertyDictionary>, UntranslatedProperty>;

// Entries in the order in which the registry gives them. A key is normally a Text.
struct PropertyDictionary {
  std::vector<std::pair<PropertyValue, PropertyValue>> entries;
};

}  // namespace platform
