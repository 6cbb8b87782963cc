// The command line of the tool. --help, which explains it all, is written here too.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FaultPlan.h"
#include "Printer.h"

namespace virtualprinter {

enum class Announce { Auto, Daemon, InProcess, No };
enum class ExitAfter { Nothing, Conversation, Burn, Return };

struct Options {
  PrinterSettings settings;
  FaultPlan faults;
  std::string address = "0.0.0.0";
  std::uint16_t port = 9100;
  Announce announce = Announce::Auto;
  // Changes to the TXT record, in the order given; no value removes the key.
  std::vector<std::pair<std::string, std::optional<std::string>>> txt;
  std::string journal;  // "-" is standard output, "" none
  bool quiet = false;
  ExitAfter exitAfter = ExitAfter::Nothing;
  std::optional<std::chrono::microseconds> timeLimit;
  bool help = false;
};

// Throws std::invalid_argument, saying what is wrong.
Options parseOptions(const std::vector<std::string>& arguments);

std::string helpText();

}  // namespace virtualprinter
