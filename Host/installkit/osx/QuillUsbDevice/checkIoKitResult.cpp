#include "checkIoKitResult.h"

#include "IoKitException.h"

void throwIoKitException(const char* message, platform::IOReturn result) {
  throw IoKitException(message, static_cast<unsigned int>(result));
}

void checkIoKitResult(const char* message, platform::IOReturn result) {
  if (result != platform::kIOReturnSuccess) throwIoKitException(message, result);
}
