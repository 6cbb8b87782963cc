// Holds what the tool writes with --json to the schema that is installed with it.
#pragma once

#include <string>

// What is wrong with the lines; empty when each of them, and at least one, is as documented.
std::string faultsOf(const std::string& lines);

// The values of "event", in their order, repeats left out.
std::string eventsIn(const std::string& lines);
