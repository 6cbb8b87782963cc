#include "IoKitException.h"

#include <sstream>

namespace {

std::string compose(const std::string& message, unsigned int returnCode) {
  std::ostringstream text;
  text << message << " [return value = 0x" << std::hex << returnCode << "]";
  return text.str();
}

}  // namespace

IoKitException::IoKitException(const std::string& message, unsigned int returnCode)
    : std::runtime_error(compose(message, returnCode)) {}
