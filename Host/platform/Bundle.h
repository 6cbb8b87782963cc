// What belongs to the installed program: its name, its resources, its texts in the user's language.
#pragma once

#include <filesystem>
#include <optional>

#include "platform/Text.h"

namespace platform {

// Found from where the executable stands: <prefix>/bin/NAME belongs to <prefix>/share/fwupdate/. An
// executable elsewhere has its name, and no resources.
class Bundle {
 public:
  virtual ~Bundle() = default;

  // False when the executable cannot be found out.
  virtual bool exists() const = 0;

  // The directory that holds the resources; none when the executable does not stand in a bin
  // directory, or the prefix has no share directory. Whether the directory can be used shows when
  // it is.
  virtual std::optional<std::filesystem::path> resourcesDirectory() const = 0;

  // The executable's file name; null when it cannot be found out, or is not text.
  virtual Text executableName() const = 0;
};

class LocalizedStrings {
 public:
  virtual ~LocalizedStrings() = default;

  // The text for `key` in the user's language; the key itself where there is no translation.
  virtual Text localizedString(const Text& key) const = 0;
};

}  // namespace platform
