// Something that the log can show although it is not a text.
#pragma once

#include "platform/Text.h"

namespace platform {

class Describable {
 public:
  virtual ~Describable() = default;

  // A readable description for people who read the log; never null.
  virtual Text description() const = 0;
};

}  // namespace platform
