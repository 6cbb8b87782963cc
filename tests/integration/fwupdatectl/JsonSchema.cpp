#include "JsonSchema.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "Places.h"
#include "ShellCommand.h"
#include "TemporaryDirectory.h"

std::string faultsOf(const std::string& lines) {
  const TemporaryDirectory directory;
  const std::filesystem::path file = directory.path() / "lines";
  std::ofstream(file, std::ios::binary) << lines;
  const Outcome outcome =
      runInShell("'" + projectFile("tests/integration/fwupdatectl/validate") + "' '" +
                 projectFile("packaging/fwupdatectl.schema.json") + "' <'" + file.string() + "'");
  return outcome.status == 0 ? "" : "invalid\n" + outcome.output + outcome.errors;
}

std::string eventsIn(const std::string& lines) {
  std::string events;
  std::string last;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) {
    const auto event = nlohmann::json::parse(line).at("event").get<std::string>();
    if (event == last) continue;
    events += events.empty() ? event : " " + event;
    last = event;
  }
  return events;
}
