#include "Log.h"

#include <new>
#include <span>
#include <string>
#include <utility>

#include "platform/Assertion.h"
#include "platform/Describable.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

namespace {

constexpr std::size_t kInitialConversionBufferSize = 256;
constexpr char kNullText[] = "<null>";

// Whoever has looked at the characters of a description may go on doing so until the process ends,
// long after the holder and the object are gone.
const platform::Text& keepDescription(platform::Text description) {
  static std::vector<platform::Text> kept;
  return kept.emplace_back(std::move(description));
}

platform::Text textOf(const platform::Describable* object) {
  if (object == nullptr) return platform::Text::fromUtf8(kNullText);
  return keepDescription(object->description());
}

}  // namespace

Logger::CfObj::CfObj(const platform::Text& text)
    : mObject(text.isNull() ? platform::Text::fromUtf8(kNullText) : text) {}

Logger::CfObj::CfObj(const platform::Describable* object) : mObject(textOf(object)) {}

Logger::Logger(int priority)
    : mPriority(priority), mConversionBuffer(kInitialConversionBufferSize) {}

Logger& Logger::operator<<(const char* text) {
  mText << (text == nullptr ? kNullText : text);
  return *this;
}

Logger& Logger::operator<<(const platform::Text& text) {
  if (text.isNull()) return *this << kNullText;
  const std::size_t length = text.length();
  const std::size_t characters = text.copyUtf8(length, {}).units;
  if (characters + 1 > mConversionBuffer.size()) {
    try {
      mConversionBuffer.resize(characters + 1);
    } catch (const std::bad_alloc&) {
      mText.setstate(std::ios_base::badbit);  // as every other insertion does
      return *this;
    }
  }

  const std::size_t limit = mConversionBuffer.size() - 1;
  char* const buffer = reinterpret_cast<char*>(mConversionBuffer.data());
  const std::size_t used = text.copyUtf8(length, std::span(buffer, limit)).bytes;
  platform::assertAt(used <= limit, "usedBufLen <= buflen", "operator<<", "Host/Common/osx/Log",
                     60);
  buffer[used] = '\0';
  mText << buffer;
  return *this;
}

Logger& Logger::operator<<(const CfObj& object) { return *this << object.mObject; }

std::ostream& Logger::operator<<(std::ostream& (*manipulator)(std::ostream&)) {
  std::ostream& stream = manipulator(mText);
  flush();
  return stream;
}

// Moved out, because a copy would need memory.
void Logger::flush() {
  const std::string entry = std::move(mText).str();
  mText.clear();
  platform::current().systemLog->write(mPriority, entry.c_str());
}
