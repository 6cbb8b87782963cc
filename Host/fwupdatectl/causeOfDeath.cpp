#include "causeOfDeath.h"

#include <cstring>

std::string assertionIn(const std::string& line) {
  const std::size_t assertion = line.find("Assertion failed: ");
  return assertion == std::string::npos ? std::string() : line.substr(assertion);
}

std::string causeOfDeath(const std::string& what, int status, const std::string& lastError) {
  if (!lastError.empty()) return lastError;
  if (status < 0) return what + " ended unexpectedly: " + strsignal(-status) + ".";
  return what + " ended unexpectedly.";
}
