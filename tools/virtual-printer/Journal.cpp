#include "Journal.h"

#include <chrono>
#include <ctime>

namespace virtualprinter {
namespace {

std::int64_t microsecondsNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

std::string dump(const Journal::Fields& value) {
  return value.dump(-1, ' ', false, Journal::Fields::error_handler_t::replace);
}

std::string timeOfDay(double time) {
  const auto seconds = static_cast<std::time_t>(time);
  std::tm local{};
  localtime_r(&seconds, &local);
  char text[16];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  const int milliseconds = static_cast<int>((time - static_cast<double>(seconds)) * 1000);
  char fraction[8];
  std::snprintf(fraction, sizeof fraction, ".%03d", milliseconds % 1000);
  return std::string(text) + fraction;
}

}  // namespace

void Journal::write(std::string_view event, const Fields& fields) {
  Fields entry;
  entry["time"] = static_cast<double>(microsecondsNow()) / 1e6;
  entry["event"] = event;
  entry.update(mCommon);
  for (const auto& [key, value] : fields.items()) entry[key] = value;
  for (const Sink& sink : mSinks) sink(entry);
}

std::string Journal::toLine(const Fields& entry) { return dump(entry); }

std::string Journal::toText(const Fields& entry) {
  std::string text =
      timeOfDay(entry.at("time").get<double>()) + ' ' + entry.at("event").get<std::string>();
  for (const auto& [key, value] : entry.items()) {
    if (key == "time" || key == "event") continue;
    text += ' ' + key + '=' + dump(value);
  }
  return text;
}

std::string Journal::hex(std::span<const std::uint8_t> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::uint8_t byte : bytes) {
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 0xf]);
  }
  return text;
}

}  // namespace virtualprinter
