// What is to be said of a process of this program that ended before it had said anything.
#pragma once

#include <string>

// The text of an assertion, in a line of a process's log; empty when it has none.
std::string assertionIn(const std::string& line);

// `what` names what the process did, as in "The update". `status` is its exit status, or a negated
// signal; `lastError` the last error in its log, if any.
std::string causeOfDeath(const std::string& what, int status, const std::string& lastError);
