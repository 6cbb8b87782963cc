#include "IoTransport.h"

#include <stdexcept>

void IoTransport::validate(const void* buffer, std::size_t length) {
  if (length == 0) throw std::runtime_error("Cannot read or write no data.");
  if (buffer == nullptr) throw std::runtime_error("Null buffer is invalid.");
}
