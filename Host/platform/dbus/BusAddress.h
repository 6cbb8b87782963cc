// Where the message buses are.
#pragma once

#include <string>

namespace platform {

enum class Bus { System, Session };

// As the environment says, or where it is by convention. Empty outside of a session.
std::string addressOf(Bus bus);

// A bus is reached by a socket of this machine: at another kind of address the library would wait
// for a network or for a new process.
bool isOfThisMachine(const std::string& address);

}  // namespace platform
