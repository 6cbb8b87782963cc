// The firmware files that there are, read once for all downloads.
#pragma once

#include <vector>

#include "platform/posix/SealedFile.h"

// A file that cannot be had is left out: a download that needs it reads it, and says why not.
std::vector<platform::SealedFile> sealFirmware();
