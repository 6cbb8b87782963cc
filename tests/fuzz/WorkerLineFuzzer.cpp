// Whatever a worker of the tool writes, on its standard output or in its log, it is shown to people
// and to programs without harm: a line of text that cannot steer a terminal, a line of JSON, a
// result with no control character. The first byte says how large the terminal is.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "Reports.h"
#include "Script.h"
#include "TerminalReport.h"
#include "causeOfDeath.h"
#include "legibleText.h"
#include "platform/Text.h"
#include "require.h"
#include "workerEvent.h"

namespace {

Target printer() {
  Target target;
  target.name = "Office";
  target.address = "192.0.2.7:9100";
  return target;
}

// UTF-8, and no control character but the ends of lines.
void requireLegible(const std::string& text) {
  require(!platform::Text::fromUtf8(text).isNull());
  require(std::ranges::none_of(
      text, [](char c) { return (c >= 0 && c < 0x20 && c != '\n') || c == 0x7F; }));
}

// Without what a terminal's rows are drawn with.
std::string withoutRowControls(std::string text) {
  for (const std::string control : {"\r\x1B[J", "\x1B[?7l", "\x1B[?7h", "\x1B[1A", "\r"}) {
    for (auto at = text.find(control); at != std::string::npos; at = text.find(control)) {
      text.erase(at, control.size());
    }
  }
  return text;
}

void showToPrograms(const nlohmann::ordered_json& event) {
  std::ostringstream out;
  JsonReport report(out);
  report.told(printer(), event);
  const std::string line = out.str();
  if (line.empty()) return;
  require(std::ranges::count(line, '\n') == 1 && line.ends_with('\n'));
  const auto again = nlohmann::ordered_json::parse(line);
  require(again.at("printer").at("address") == "192.0.2.7:9100");
}

void showInAPipe(const nlohmann::ordered_json* event, const std::string& line) {
  std::ostringstream results;
  std::ostringstream errors;
  PlainReport report(results, errors, false);
  if (event != nullptr) report.told(printer(), *event);
  report.logged(printer(), line);
  UpdateResult failed;
  failed.cause = line;
  failed.nextStep = line;
  report.ended(printer(), failed);
  requireLegible(results.str());
  requireLegible(errors.str());
  require(std::ranges::count(errors.str(), '\n') == 2);
}

void showAtATerminal(const nlohmann::ordered_json* event, const std::string& line,
                     std::uint8_t size) {
  std::ostringstream terminal;
  std::ostringstream errors;
  TerminalReport report(
      terminal, errors,
      [size] {
        TerminalSize screen{};
        screen.rows = size % 4;
        screen.columns = size / 4;
        return screen;
      },
      2);
  report.began(printer());
  if (event != nullptr) report.told(printer(), *event);
  report.logged(printer(), line);
  report.ended(printer(), {});
  requireLegible(withoutRowControls(terminal.str()));
  requireLegible(errors.str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  const std::uint8_t screen = script.take();
  const std::string line = size == 0 ? "" : script.take(size - 1);

  const auto event = workerEvent(line);
  if (event) {
    require(event->at("event").is_string());
    showToPrograms(*event);
  }
  showInAPipe(event ? &*event : nullptr, line);
  showAtATerminal(event ? &*event : nullptr, line, screen);

  const std::string assertion = assertionIn(line);
  require(line.ends_with(assertion));
  require(assertion.empty() || assertion.starts_with("Assertion failed: "));
  require(columnsOf(cutText(legibleText(line), screen)) <= screen);
  return 0;
}
