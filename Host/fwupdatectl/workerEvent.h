// What a process of this program has said in a line of its standard output. It has heard from a
// printer, and may have been cut short: nothing is an event but what a worker would say.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

// The event, an object with its "event"; each member that anybody asks for has the type that the
// worker gives it, and none goes deeper than "firmware" does. Nothing for any other line.
std::optional<nlohmann::ordered_json> workerEvent(const std::string& line);
