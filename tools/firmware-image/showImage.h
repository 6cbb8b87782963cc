// The command "show".
#pragma once

#include "Arguments.h"

// Prints what a firmware file holds and what the updater makes of it; false when its platform ID is
// malformed. Throws UsageError, or std::runtime_error when the updater cannot load the file.
bool showImage(const Arguments& arguments);
