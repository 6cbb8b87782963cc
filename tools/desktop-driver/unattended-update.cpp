// unattended-update: a whole update without anybody at the machine. Starts a virtual desktop, a
// virtual printer and the program; selects the printer, answers the question, waits for the end;
// keeps a picture of each step; and believes nothing but the printer's journal.
#include <openssl/evp.h>
#include <signal.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ChildProcess.h"
#include "Node.h"
#include "VirtualDesktop.h"

namespace {

using namespace std::chrono_literals;
using desktop::ChildProcess;
using desktop::Node;
using std::filesystem::path;

constexpr auto kPatience = 60s;
constexpr auto kUntilTheNextClick = 3s;

constexpr char kUsage[] =
    "Usage: unattended-update PROGRAM FIRMWARE OUTPUT PRINTER [PRINTER-OPTION...]\n"
    "\n"
    "  PROGRAM   the updater\n"
    "  FIRMWARE  the file that the printer must have burned in the end\n"
    "  OUTPUT    an existing folder for pictures, the log and the printer's journal\n"
    "  PRINTER   the virtual printer, started with the options that follow it\n"
    "\n"
    "Exit status: 0 when the printer burned exactly that file, 1 when not, 2 for a wrong call.\n";

struct Settings {
  path program;
  path firmware;
  path output;
  std::vector<std::string> printer;
};

std::string readFile(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string sha256(const std::string& bytes) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned length = 0;
  EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_sha256(), nullptr);
  std::string text;
  for (const unsigned char byte : std::span(digest).first(length)) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", byte);
    text += digits.data();
  }
  return text;
}

class UnattendedUpdate {
 public:
  explicit UnattendedUpdate(const Settings& settings)
      : mSettings(settings),
        mDesktop(settings.output),
        mPrinter(printerCommand(), settings.output / "printer.log"),
        mProgram({settings.program.string(), "-e"}, settings.output / "program.log",
                 mDesktop.environment()) {}

  // True when the printer has burned the file.
  bool run() {
    find("the printer in the list", isPrinter);
    keepPicture("1-list");
    clickUntil(isPrinter, "an enabled Download button",
               [this] { return isSeen(isEnabledDownload); });
    keepPicture("2-selected");
    // A printer on the network is asked about, one on USB is not.
    clickUntil(isEnabledDownload, "a question or the download",
               [this] { return downloadHasBegun() || isSeen(isConfirm); });
    if (!downloadHasBegun()) {
      keepPicture("2-question");
      clickUntil(isConfirm, "the download", [this] { return downloadHasBegun(); });
    }
    keepPicture("3-progress");

    const std::optional<nlohmann::json> burn = waitForBurn();
    desktop::waitUntil([&] { return !isSeen(isProgress); }, 30s);
    keepPicture("4-end");
    mProgram.signal(SIGTERM);
    mProgram.waitForExit(5s);
    return report(burn);
  }

 private:
  using Condition = std::function<bool(const Node&)>;

  static bool isPrinter(const Node& node) {
    return node.role() == "table cell" && node.name().find("KX350T") != std::string::npos;
  }
  static bool isButton(const Node& node, std::string_view name) {
    return node.role() == "push button" && node.name() == name && node.isEnabled();
  }
  static bool isEnabledDownload(const Node& node) { return isButton(node, "Download"); }
  static bool isConfirm(const Node& node) { return isButton(node, "Download firmware"); }
  static bool isProgress(const Node& node) { return node.role() == "progress bar"; }
  static bool isClose(const Node& node) { return node.name() == "Close"; }

  bool isSeen(const Condition& condition) const {
    return desktop::findNode(mProgram.pid(), condition, 0ms).has_value();
  }

  // Where a look at the whole window takes seconds, a download may be over at the first one.
  bool downloadHasBegun() const {
    return mProgram.output().find("Connecting to I/O transport...") != std::string::npos;
  }

  path journal() const { return mSettings.output / "journal.jsonl"; }

  std::vector<std::string> printerCommand() const {
    std::vector<std::string> command = mSettings.printer;
    command.insert(command.end(), {"--journal", journal().string()});
    return command;
  }

  Node find(const std::string& what, const Condition& condition) {
    if (auto node = desktop::findNode(mProgram.pid(), condition, kPatience)) return *node;
    giveUp(what);
  }

  [[noreturn]] void giveUp(const std::string& what) {
    keepPicture("failed");
    throw std::runtime_error("waited in vain for " + what + "; the program wrote:\n" +
                             mProgram.output() + "\nthe printer wrote:\n" + mPrinter.output());
  }

  // A click comes to nothing where the window is not in its place yet, or a sheet does not listen
  // yet. So it is done again until it had its `effect`.
  void clickUntil(const Condition& target, const std::string& what,
                  const std::function<bool()>& effect) {
    auto nextClick = std::chrono::steady_clock::now();
    const bool isDone = desktop::waitUntil(
        [&] {
          if (effect()) return true;
          if (std::chrono::steady_clock::now() < nextClick) return false;
          if (const auto node = desktop::findNode(mProgram.pid(), target, 0ms)) {
            click(*node);
            nextClick = std::chrono::steady_clock::now() + kUntilTheNextClick;
          }
          return false;
        },
        kPatience);
    if (!isDone) giveUp(what);
  }

  void click(const Node& node) {
    const Node::Rectangle at = node.extents();
    mDesktop.click(at.x + at.width / 2, at.y + at.height / 2);
  }

  std::optional<nlohmann::json> burnEntry() const {
    std::istringstream lines(readFile(journal()));
    for (std::string line; std::getline(lines, line);) {
      nlohmann::json entry = nlohmann::json::parse(line, nullptr, false);
      if (!entry.is_discarded() && entry.value("event", "") == "burn") return entry;
    }
    return std::nullopt;
  }

  // A message to close says that there will be none.
  std::optional<nlohmann::json> waitForBurn() {
    desktop::waitUntil(
        [&] { return burnEntry().has_value() || mProgram.exitStatus() || isSeen(isClose); }, 300s);
    return burnEntry();
  }

  void keepPicture(const std::string& name) {
    // What has just appeared may not be painted yet.
    std::this_thread::sleep_for(300ms);
    mDesktop.screenshot(mSettings.output / (name + ".png"));
  }

  bool report(const std::optional<nlohmann::json>& burn) {
    const std::string wanted = sha256(readFile(mSettings.firmware));
    std::cout << "The program's log:\n" << mProgram.output() << '\n';
    if (!burn) {
      std::cout << "Outcome: FAILED. The printer burned nothing.\n";
      return false;
    }
    const std::string burned = burn->value("sha256", "");
    std::cout << "The printer received " << burn->value("bytes", 0) << " bytes, version "
              << burn->value("version", "?") << ".\n"
              << "  SHA-256 of the file:       " << wanted << '\n'
              << "  SHA-256 that was burned:   " << burned << '\n';
    const bool good = burn->value("ok", false) && burned == wanted;
    std::cout << (good ? "Outcome: the printer burned the image.\n"
                       : "Outcome: FAILED. " + burn->value("reason", "") + "\n");
    return good;
  }

  Settings mSettings;
  desktop::VirtualDesktop mDesktop;
  ChildProcess mPrinter;
  ChildProcess mProgram;
};

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (!arguments.empty() && arguments.front() == "--help") {
    std::cout << kUsage;
    return 0;
  }
  if (arguments.size() < 4) {
    std::cerr << kUsage;
    return 2;
  }
  try {
    const Settings settings{
        arguments[0], arguments[1], arguments[2], {arguments.begin() + 3, arguments.end()}};
    return UnattendedUpdate(settings).run() ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << "unattended-update: " << error.what() << '\n';
    return 1;
  }
}
