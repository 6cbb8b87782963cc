// The one form in which a platform status reaches the log and exception texts.
#pragma once

#include <string>

#include "platform/Status.h"

// MESSAGE <status=STATUS => NAME; desc: DESCRIPTION>
std::string buildErrorMessage(const char* message, platform::OSStatus status);
