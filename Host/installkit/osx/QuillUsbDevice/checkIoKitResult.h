// How results of the registry's operations become exceptions, for every class of this layer. The
// surface has signed results, IoKitException takes the bare code: the conversion is only here.
#pragma once

#include "platform/UsbRegistry.h"

// Throws IoKitException, also for a success that did not give what it should have.
[[noreturn]] void throwIoKitException(const char* message, platform::IOReturn result);

// The same unless `result` is kIOReturnSuccess.
void checkIoKitResult(const char* message, platform::IOReturn result);
