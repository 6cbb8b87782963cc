#include "ErrorMessage.h"

#include "platform/Platform.h"

std::string buildErrorMessage(const char* message, platform::OSStatus status) {
  const platform::StatusTable& statuses = *platform::current().statuses;
  return std::string(message) + " <status=" + std::to_string(status) + " => " +
         statuses.name(status) + "; desc: " + statuses.description(status) + ">";
}
