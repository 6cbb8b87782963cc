#include "Log.h"

#include <span>

#include "platform/Assertion.h"
#include "platform/Describable.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

namespace {

constexpr std::size_t kInitialConversionBufferSize = 256;
constexpr char kNullText[] = "<null>";

// Descriptions stay alive until the process ends, so that a holder never outlives its text.
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

Logger& Logger::operator<<(const platform::Text& text) {
  if (text.isNull()) {
    mText << kNullText;
    return *this;
  }
  const std::size_t length = text.length();
  const std::size_t characters = text.copyUtf8(length, {}).units;
  if (characters + 1 > mConversionBuffer.size()) mConversionBuffer.resize(characters + 1);

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

void Logger::flush() {
  platform::current().systemLog->write(mPriority, mText.str().c_str());
  mText.str("");
}
