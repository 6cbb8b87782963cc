#include "Reports.h"

#include "JsonLines.h"
#include "legibleText.h"

using nlohmann::ordered_json;

namespace {

const char* outcomeName(UpdateResult::Outcome outcome) {
  switch (outcome) {
    case UpdateResult::Outcome::Updated:
      return "updated";
    case UpdateResult::Outcome::UpToDate:
      return "up-to-date";
    case UpdateResult::Outcome::Failed:
      return "failed";
    case UpdateResult::Outcome::NotStarted:
      return "not-started";
  }
  return "";
}

ordered_json withPrinter(const Target& printer, const ordered_json& members) {
  ordered_json json{{"printer", toJson(printer)}};
  json.update(members);
  return json;
}

}  // namespace

std::string phaseOf(const ordered_json& event) {
  if (event.value("event", "") != "phase") return {};
  const std::string phase = event.value("phase", "");
  if (phase == "connecting") return "connecting";
  if (phase == "asking-for-version") return "asking for its version";
  if (phase == "choosing-firmware") return "choosing its firmware";
  if (phase == "sending-firmware") return "sending the firmware";
  if (phase == "burning-firmware") return "the printer is writing its memory";
  if (phase == "waiting-for-return") return "waiting until it is back";
  return {};
}

std::string labelOf(const Target& printer) {
  const std::string& place = printer.serial.empty() ? printer.address : printer.serial;
  const bool isNamedByIt = place.empty() || place == printer.name;
  return legibleText(isNamedByIt ? printer.name : printer.name + " (" + place + ")");
}

std::string sentenceOf(const Target& printer, const UpdateResult& result) {
  const std::string label = labelOf(printer) + ": ";
  const std::string version = std::to_string(result.versionOfFirmware);
  const std::string before = std::to_string(result.versionBefore);
  switch (result.outcome) {
    case UpdateResult::Outcome::Updated:
      if (result.versionAfter) {
        return label + "now runs version " + std::to_string(*result.versionAfter) + " (was " +
               before + ")";
      }
      return label + "updated to version " + version + " (was " + before + ")";
    case UpdateResult::Outcome::UpToDate:
      return label + "up to date (version " + before + ")";
    case UpdateResult::Outcome::NotStarted:
      return label + "not started";
    case UpdateResult::Outcome::Failed:
      break;
  }
  const std::string nextStep = result.nextStep.empty() ? "" : " " + legibleText(result.nextStep);
  return label + "failed: " + legibleText(result.cause) + nextStep;
}

std::string sentenceOf(const UpdateTally& tally) {
  std::string sentence;
  const auto add = [&](std::size_t count, const char* outcome) {
    if (count == 0) return;
    if (!sentence.empty()) sentence += ", ";
    sentence += std::to_string(count) + " " + outcome;
  };
  add(tally.updated, "updated");
  add(tally.upToDate, "up to date");
  add(tally.failed, "failed");
  add(tally.notStarted, "not started");
  return sentence;
}

void UpdateTally::count(UpdateResult::Outcome outcome) {
  switch (outcome) {
    case UpdateResult::Outcome::Updated:
      ++updated;
      break;
    case UpdateResult::Outcome::UpToDate:
      ++upToDate;
      break;
    case UpdateResult::Outcome::Failed:
      ++failed;
      break;
    case UpdateResult::Outcome::NotStarted:
      ++notStarted;
      break;
  }
}

void PlainReport::began(const Target&) {}

void PlainReport::told(const Target& printer, const ordered_json& event) {
  const std::string phase = phaseOf(event);
  if (!mQuiet && !phase.empty()) mResults << labelOf(printer) << ": " << phase << std::endl;
}

void PlainReport::logged(const Target& printer, const std::string& line) {
  mErrors << labelOf(printer) << ": " << legibleText(line) << std::endl;
}

void PlainReport::ended(const Target& printer, const UpdateResult& result) {
  const bool isError = result.outcome == UpdateResult::Outcome::Failed;
  if (isError || !mQuiet) {
    (isError ? mErrors : mResults) << sentenceOf(printer, result) << std::endl;
  }
}

void PlainReport::summed(const UpdateTally& tally) {
  if (!mQuiet) mResults << sentenceOf(tally) << std::endl;
}

void JsonReport::began(const Target& printer) {
  writeLine(mOut, jsonEvent("begun", withPrinter(printer, ordered_json::object())));
}

void JsonReport::told(const Target& printer, const ordered_json& event) {
  ordered_json line = event;
  line["printer"] = toJson(printer);
  const std::string kind = event.value("event", "");
  // Those are about the process. What they say is in the printer's outcome.
  if (kind != "outcome" && kind != "cause" && kind != "failure") writeLine(mOut, line);
}

void JsonReport::ended(const Target& printer, const UpdateResult& result) {
  ordered_json members{{"outcome", outcomeName(result.outcome)}};
  if (result.versionOfFirmware != 0) {
    members["version_before"] = result.versionBefore;
    members["version_of_firmware"] = result.versionOfFirmware;
  }
  if (result.versionAfter) members["version_after"] = *result.versionAfter;
  if (!result.cause.empty()) members["cause"] = result.cause;
  if (!result.nextStep.empty()) members["next_step"] = result.nextStep;
  if (result.isNotPermitted) members["not_permitted"] = true;
  writeLine(mOut, jsonEvent("outcome", withPrinter(printer, members)));
}

void JsonReport::summed(const UpdateTally& tally) {
  writeLine(mOut, jsonEvent("summary", {{"updated", tally.updated},
                                        {"up_to_date", tally.upToDate},
                                        {"failed", tally.failed},
                                        {"not_started", tally.notStarted}}));
}
