// The command "show".
#pragma once

#include "Arguments.h"

// Prints what a firmware file holds and what the updater makes of it; false when its trailer is
// malformed. Throws UsageError, or std::runtime_error when the file cannot be read.
bool showImage(const Arguments& arguments);
