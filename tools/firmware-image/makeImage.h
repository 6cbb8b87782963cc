// The command "make".
#pragma once

#include "Arguments.h"

// Writes the file that the arguments describe. Throws UsageError, or std::runtime_error when a file
// cannot be read or written.
void makeImage(Arguments arguments);
