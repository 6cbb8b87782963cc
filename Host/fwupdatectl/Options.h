// What the command line asks for.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

struct Options {
  enum class Command { List, Update, Show, Check, Worker };
  enum class Output { Text, Json, Quiet };

  Command command = Command::List;
  Output output = Output::Text;
  bool verbose = false;

  std::chrono::milliseconds wait{3000};  // for printers to be found
  bool watch = false;

  bool versions = false;                      // list: ask the printers for theirs
  std::chrono::milliseconds patience{10000};  // with a printer that does not answer

  std::vector<std::string> names;
  std::vector<std::string> addresses;
  std::vector<std::string> serials;
  bool all = false;
  bool yes = false;
  std::size_t jobs = 8;
  std::chrono::milliseconds timeout{0};  // of one download; 0 for none
  bool verify = false;
  std::chrono::milliseconds returnWait{120000};  // for a printer to be back

  std::string file;   // show
  std::string order;  // worker
};

// The exit statuses, as the manual page lists them.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kUsageError = 2;
inline constexpr int kNoSuchPrinter = 3;
inline constexpr int kNotPermitted = 4;
inline constexpr int kInterrupted = 130;
