// What happened, one JSON object to a line: "time" (seconds since 1970, to the microsecond),
// "event" and the fields of the event, in a fixed order. docs/wire-protocol.md lists the events.
// Everything of one printer writes to the one journal; whoever constructs it decides where the
// lines go. A copy writes to the same places.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace virtualprinter {

class Journal {
 public:
  using Fields = nlohmann::ordered_json;
  using Sink = std::function<void(const Fields& entry)>;

  void addSink(Sink sink) { mSinks.push_back(std::move(sink)); }

  // Each entry gets it, behind "event": whose of several printers it is.
  void addField(const std::string& name, const std::string& value) { mCommon[name] = value; }

  // `fields` is an object, or null for none.
  void write(std::string_view event, const Fields& fields = {});

  // The entry as a line of the journal file, without the line's end. Bytes that are not UTF-8 are
  // replaced.
  static std::string toLine(const Fields& entry);

  // The entry for people: the time of day, the event, its fields.
  static std::string toText(const Fields& entry);

  // Two lower-case digits for each byte, without blanks.
  static std::string hex(std::span<const std::uint8_t> bytes);

 private:
  std::vector<Sink> mSinks;
  Fields mCommon = Fields::object();
};

}  // namespace virtualprinter
