// What this tool says to programs: one JSON object a line, each with the version of its form.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>

#include "Target.h"
#include "platform/FailureCause.h"

inline constexpr int kJsonSchema = 1;

// With "schema", "time" (RFC 3339, UTC) and "event", and what is in `members`.
nlohmann::ordered_json jsonEvent(const char* event, const nlohmann::ordered_json& members);

// Whatever bytes a printer's name has: what is no UTF-8 of it becomes U+FFFD. Flushed.
void writeLine(std::ostream& out, const nlohmann::ordered_json& line);

// "connection", "name", and "serial" or "address".
nlohmann::ordered_json toJson(const Target& target);

// "cause" and "next_step", each a sentence; "not_permitted", true, where that is the cause.
nlohmann::ordered_json toJson(const platform::FailureCause& why);

// Throws nlohmann::json::exception for another form.
Target targetFromJson(const nlohmann::ordered_json& json);
