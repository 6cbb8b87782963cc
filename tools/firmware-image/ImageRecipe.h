// What a firmware file is made of: data, and the platform ID block with the firmware version behind
// it. Can be made malformed on purpose, to see what the updater does about it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class Malformation { None, VersionByte, FieldCount, LengthByte, ShortVersion, NoTrailer };

struct ImageRecipe {
  std::string firstField = "KX350T";
  std::string version = "00000001";
  std::string lastField = "demo";
  Malformation malformation = Malformation::None;

  // The platform ID block, its format version and its length; empty without a trailer. Throws
  // UsageError when the fields do not fit.
  std::string trailer() const;
};

// Each kind of malformation by the name that the user gives it; none for an unknown name.
std::optional<Malformation> malformationNamed(const std::string& name);
