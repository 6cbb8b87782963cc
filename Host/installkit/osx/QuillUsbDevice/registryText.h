// Registry texts as this layer reads them, for the strings of a device as well as for the dump of
// its properties: by way of a buffer of 256 bytes.
#pragma once

#include <string>

#include "platform/Text.h"

// The text's UTF-8 bytes up to the first zero. Empty for a null text, and for one that takes more
// than 256 bytes with its terminating zero.
std::string registryText(const platform::Text& text);
