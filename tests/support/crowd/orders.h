// What the crowd is told to do, one order a line: a word, the members' numbers, for some words one
// more number. See the program's help.
#pragma once

#include <string>

#include "Responder.h"

namespace crowd {

// Throws std::invalid_argument, and does nothing, when there is no such order or no such member.
void obey(Responder& responder, const std::string& line, Time now);

}  // namespace crowd
