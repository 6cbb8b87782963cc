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

// The printer on a USB cable; texts that are not set follow from the settings.
struct UsbOptions {
  bool wanted = false;
  std::string controller;  // empty is any free one
  std::uint16_t vendorId = 0x3A71;
  std::uint16_t productId = 0x0C28;
  std::optional<std::string> manufacturer;
  std::optional<std::string> product;
  std::optional<std::string> serial;
};

struct Options {
  PrinterSettings settings;
  FaultPlan faults;
  std::string address = "0.0.0.0";
  std::uint16_t port = 9100;
  std::optional<unsigned> count;  // many printers in one, at consecutive addresses
  Announce announce = Announce::Auto;
  // Changes to the TXT record, in the order given; no value removes the key.
  std::vector<std::pair<std::string, std::optional<std::string>>> txt;
  UsbOptions usb;
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
