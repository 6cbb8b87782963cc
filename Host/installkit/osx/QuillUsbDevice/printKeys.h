// Writes a registry entry's properties for diagnosis, one a line. Devices and interfaces print
// themselves by it.
#pragma once

#include <iosfwd>

#include "platform/UsbRegistry.h"

// Writes a heading that names the `kind` of entry ("device", "interface") and, unless it is null,
// its `name`, then the properties. Numbers come in the base that the stream is set to. Writes
// nothing at all when the properties cannot be read.
void printKeys(std::ostream& os, platform::io_registry_entry_t entry, const char* kind,
               const char* name);

// What one level of the dump hands to the next.
struct PrintKeyContext {
  int indent;
  std::ostream* stream;
};

// Writes one property. Does nothing without a context.
void printKey(const platform::PropertyValue& key, const platform::PropertyValue& value,
              const PrintKeyContext* context);
