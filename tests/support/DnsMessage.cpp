#include "DnsMessage.h"

#include <stdexcept>

namespace dns {
namespace {

constexpr std::size_t kHeaderSize = 12;
constexpr std::size_t kPointerLimit = 0x4000;
constexpr std::uint8_t kPointerBits = 0xC0;

class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : mBytes(bytes) {}

  std::size_t position() const { return mPosition; }

  std::uint32_t number(std::size_t size) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : take(size)) number = number << 8 | byte;
    return number;
  }

  std::span<const std::uint8_t> take(std::size_t size) {
    if (size > mBytes.size() - mPosition) throw std::runtime_error("the message is cut off");
    const auto taken = mBytes.subspan(mPosition, size);
    mPosition += size;
    return taken;
  }

  // A pointer leads to before what has been read of the name, so that none can lead in a circle.
  Name name() {
    Name labels;
    std::size_t start = mPosition;
    std::size_t after = 0;
    for (;;) {
      const auto length = static_cast<std::uint8_t>(number(1));
      if (length == 0) break;
      if ((length & kPointerBits) == kPointerBits) {
        const std::size_t target = (length & ~kPointerBits & 0xFFu) << 8 | number(1);
        if (after == 0) after = mPosition;
        if (target >= start) throw std::runtime_error("a name points forwards");
        mPosition = start = target;
        continue;
      }
      const auto label = take(length);
      labels.emplace_back(label.begin(), label.end());
    }
    if (after != 0) mPosition = after;
    return labels;
  }

 private:
  std::span<const std::uint8_t> mBytes;
  std::size_t mPosition = 0;
};

Question readQuestion(Reader& reader) {
  Question question;
  question.name = reader.name();
  question.type = static_cast<std::uint16_t>(reader.number(2));
  question.dnsClass = static_cast<std::uint16_t>(reader.number(2));
  return question;
}

Record readRecord(Reader& reader) {
  const Question head = readQuestion(reader);
  Record record{head.name, head.type, head.dnsClass, reader.number(4), {}, {}};
  const std::size_t size = reader.number(2);
  const std::size_t end = reader.position() + size;
  const std::size_t fixed = record.type == kTypePtr ? 0 : record.type == kTypeSrv ? 6 : size;
  const auto data = reader.take(fixed);
  record.data.assign(data.begin(), data.end());
  if (fixed != size) record.target = reader.name();
  if (reader.position() != end) throw std::runtime_error("a record's data have another length");
  return record;
}

// What the message has for the labels from `first` on, length bytes included.
std::string wireForm(const Name& name, std::size_t first) {
  std::string form;
  for (std::size_t i = first; i < name.size(); ++i) {
    form.push_back(static_cast<char>(name[i].size()));
    form += name[i];
  }
  return form;
}

}  // namespace

Message parse(std::span<const std::uint8_t> bytes) {
  Reader reader(bytes);
  Message message;
  message.id = static_cast<std::uint16_t>(reader.number(2));
  message.flags = static_cast<std::uint16_t>(reader.number(2));
  const std::uint32_t questions = reader.number(2);
  const std::uint32_t answers = reader.number(2);
  reader.number(4);
  for (std::uint32_t i = 0; i < questions; ++i) message.questions.push_back(readQuestion(reader));
  for (std::uint32_t i = 0; i < answers; ++i) message.answers.push_back(readRecord(reader));
  return message;
}

MessageWriter::MessageWriter(std::uint16_t id, std::uint16_t flags) {
  write(id, 2);
  write(flags, 2);
  mBytes.resize(kHeaderSize);
}

void MessageWriter::addQuestion(const Question& question) {
  write(question.name);
  write(question.type, 2);
  write(question.dnsClass, 2);
  count(0);
}

void MessageWriter::addRecord(Section section, const Record& record) {
  write(record.name);
  write(record.type, 2);
  write(record.dnsClass, 2);
  write(record.timeToLive, 4);
  write(0, 2);
  const std::size_t start = mBytes.size();
  mBytes.insert(mBytes.end(), record.data.begin(), record.data.end());
  if (!record.target.empty()) write(record.target);
  const std::size_t size = mBytes.size() - start;
  mBytes[start - 2] = static_cast<std::uint8_t>(size >> 8);
  mBytes[start - 1] = static_cast<std::uint8_t>(size & 0xFF);
  count(static_cast<std::size_t>(section));
}

bool MessageWriter::addRecordWithin(std::size_t size, Section section, const Record& record) {
  MessageWriter longer(*this);
  longer.addRecord(section, record);
  if (longer.mBytes.size() > size) return false;
  *this = std::move(longer);
  return true;
}

void MessageWriter::count(std::size_t section) {
  std::uint8_t* const number = &mBytes[4 + 2 * section];
  if (++number[1] == 0) ++number[0];
}

void MessageWriter::write(std::uint64_t number, std::size_t size) {
  while (size-- > 0) mBytes.push_back(static_cast<std::uint8_t>(number >> 8 * size & 0xFF));
}

void MessageWriter::write(const Name& name) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto [known, isNew] = mNames.try_emplace(wireForm(name, i), mBytes.size());
    if (!isNew) return write(std::size_t{kPointerBits} << 8 | known->second, 2);
    if (mBytes.size() >= kPointerLimit) mNames.erase(known);
    write(name[i].size(), 1);
    mBytes.insert(mBytes.end(), name[i].begin(), name[i].end());
  }
  write(0, 1);
}

}  // namespace dns
