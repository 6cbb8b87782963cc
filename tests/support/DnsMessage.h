// DNS messages as multicast DNS uses them, written and read for tests: by printers that behave and
// by such as do not, so that names and data may be any bytes. Shares no code with Avahi, whose
// bytes it is there to prove.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace dns {

using Bytes = std::vector<std::uint8_t>;
using Name = std::vector<std::string>;  // its labels

constexpr std::uint16_t kTypeA = 1;
constexpr std::uint16_t kTypePtr = 12;
constexpr std::uint16_t kTypeTxt = 16;
constexpr std::uint16_t kTypeAaaa = 28;
constexpr std::uint16_t kTypeSrv = 33;
constexpr std::uint16_t kTypeAny = 255;

constexpr std::uint16_t kClassIn = 1;
constexpr std::uint16_t kClassAny = 255;
constexpr std::uint16_t kTopBit = 0x8000;  // wants a unicast answer; replaces what was known

constexpr std::uint16_t kFlagResponse = 0x8000;
constexpr std::uint16_t kFlagAuthoritative = 0x0400;
constexpr std::uint16_t kFlagTruncated = 0x0200;

struct Question {
  Name name;
  std::uint16_t type = 0;
  std::uint16_t dnsClass = kClassIn;
};

// The data are bytes, followed by a name for the types that end with one.
struct Record {
  Name name;
  std::uint16_t type = 0;
  std::uint16_t dnsClass = kClassIn;
  std::uint32_t timeToLive = 0;
  Bytes data;
  Name target;
};

struct Message {
  std::uint16_t id = 0;
  std::uint16_t flags = 0;
  std::vector<Question> questions;
  std::vector<Record> answers;  // the other sections are not read
};

// Throws std::runtime_error for bytes that are no message.
Message parse(std::span<const std::uint8_t> bytes);

// Sections are written in the order of this enumeration.
enum class Section { Answers = 1, Authority = 2, Additional = 3 };

// Names are compressed against all that were written before.
class MessageWriter {
 public:
  MessageWriter(std::uint16_t id, std::uint16_t flags);

  void addQuestion(const Question& question);
  void addRecord(Section section, const Record& record);

  // Adds nothing, and answers false, when the message would become longer.
  bool addRecordWithin(std::size_t size, Section section, const Record& record);

  const Bytes& bytes() const { return mBytes; }

 private:
  void count(std::size_t section);
  void write(std::uint64_t number, std::size_t size);
  void write(const Name& name);

  Bytes mBytes;
  std::map<std::string, std::size_t> mNames;  // where each begins that can be pointed to
};

}  // namespace dns
