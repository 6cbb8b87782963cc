#include "workerEvent.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

using nlohmann::ordered_json;

namespace {

template <typename... Names>
bool isOneOf(std::string_view name, Names... names) {
  return ((name == names) || ...);
}

bool isNumber32(const ordered_json& value) {
  return value.is_number_unsigned() && value.get<std::uint64_t>() <= UINT32_MAX;
}

// Of "firmware", too: its members are called like those of an event.
bool isMember(std::string_view name, const ordered_json& value) {
  if (isOneOf(name, "event", "message", "cause", "next_step", "outcome", "phase", "file")) {
    return value.is_string();
  }
  if (isOneOf(name, "version_before", "version_of_firmware", "version", "bound_ms")) {
    return isNumber32(value);
  }
  if (isOneOf(name, "bytes", "total")) return value.is_number_unsigned();
  if (isOneOf(name, "not_permitted", "in_use")) return value.is_boolean();
  return value.is_primitive();
}

bool areMembers(const ordered_json& object) {
  return std::ranges::all_of(
      object.items(), [](const auto& member) { return isMember(member.key(), member.value()); });
}

bool isFirmware(const ordered_json& value) { return value.is_object() && areMembers(value); }

}  // namespace

std::optional<ordered_json> workerEvent(const std::string& line) {
  auto event = ordered_json::parse(line, nullptr, false);
  if (!event.is_object() || !event.contains("event")) return std::nullopt;
  const bool isRight = std::ranges::all_of(event.items(), [](const auto& member) {
    return member.key() == "firmware" ? isFirmware(member.value())
                                      : isMember(member.key(), member.value());
  });
  if (!isRight) return std::nullopt;
  return event;
}
