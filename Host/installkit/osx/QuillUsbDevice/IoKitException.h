// Thrown when an operation on the device registry or on one of its objects fails. The return code
// is part of the text and nowhere else, so that it reaches the log whoever catches the exception.
#pragma once

#include <stdexcept>
#include <string>

class IoKitException : public std::runtime_error {
 public:
  // what() is "MESSAGE [return value = 0xCODE]", the code in lower-case hexadecimal without leading
  // zeros.
  IoKitException(const std::string& message, unsigned int returnCode);
};
