#include "JsonLines.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

using nlohmann::ordered_json;

namespace {

std::string timeNow() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto past = now - std::chrono::system_clock::from_time_t(seconds);
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(past);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  std::array<char, 32> date{};
  static_cast<void>(std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &utc));
  std::array<char, 8> fraction{};
  static_cast<void>(std::snprintf(fraction.data(), fraction.size(), ".%03dZ",
                                  static_cast<int>(milliseconds.count() % 1000)));
  return std::string(date.data()) + fraction.data();
}

std::string withSubject(const char* sentence, const std::string& subject) {
  std::string text = sentence == nullptr ? "" : sentence;
  const std::size_t mark = text.find("%1");
  if (mark != std::string::npos) text.replace(mark, 2, subject);
  return text;
}

}  // namespace

ordered_json jsonEvent(const char* event, const ordered_json& members) {
  ordered_json line{{"schema", kJsonSchema}, {"time", timeNow()}, {"event", event}};
  line.update(members);
  return line;
}

void writeLine(std::ostream& out, const ordered_json& line) {
  out << line.dump(-1, ' ', false, ordered_json::error_handler_t::replace) << std::endl;
}

ordered_json toJson(const Target& target) {
  if (target.connection == Target::Connection::Usb) {
    return {{"connection", "usb"}, {"name", target.name}, {"serial", target.serial}};
  }
  return {{"connection", "network"}, {"name", target.name}, {"address", target.address}};
}

ordered_json toJson(const platform::FailureCause& why) {
  ordered_json json{{"cause", withSubject(why.cause, why.subject)},
                    {"next_step", withSubject(why.nextStep, why.subject)}};
  if (why.isNotPermitted) json["not_permitted"] = true;
  return json;
}

Target targetFromJson(const ordered_json& json) {
  Target target;
  target.name = json.at("name").get<std::string>();
  if (json.at("connection").get<std::string>() == "usb") {
    target.connection = Target::Connection::Usb;
    target.serial = json.at("serial").get<std::string>();
  } else {
    target.address = json.at("address").get<std::string>();
  }
  return target;
}
