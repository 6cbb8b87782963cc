// What workers say, and the printers that stand for them.
#pragma once

#include <string>

#include "Target.h"

inline constexpr char kSleep[] = "exec sleep 1000";
// A signal that is ignored stays so in what the shell becomes.
inline constexpr char kHeedNoTermination[] = "trap '' TERM; ";

inline std::string say(const std::string& event) { return "echo '" + event + "'; "; }

inline std::string sayPhase(const std::string& phase, int boundMs = 0) {
  return say(R"({"event":"phase","phase":")" + phase + R"(","bound_ms":)" +
             std::to_string(boundMs) + "}");
}

inline std::string sayOutcome(const std::string& outcome) {
  return say(R"({"event":"outcome","outcome":")" + outcome + R"("})");
}

inline std::string sayVersions(int before, int ofFirmware) {
  return say(R"({"event":"versions","version_before":)" + std::to_string(before) +
             R"(,"version_of_firmware":)" + std::to_string(ofFirmware) + "}");
}

inline std::string sayVersion(int version) {
  return say(R"({"event":"version","version":)" + std::to_string(version) + "}");
}

inline Target printerThatRuns(const std::string& script, int number = 1) {
  return {Target::Connection::Network, script, {}, "10.0.0." + std::to_string(number) + ":9100"};
}
