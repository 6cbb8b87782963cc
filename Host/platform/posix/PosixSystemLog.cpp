#include "platform/posix/PosixSystemLog.h"

#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

#include "platform/Utf8.h"

namespace platform {
namespace {

static_assert(SystemLog::kMirrorToStandardError == LOG_PERROR);
static_assert(SystemLog::kUserFacility == LOG_USER);

// Nobody may be reading: what cannot be written is dropped.
void writeToStandardError(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Whether a terminal or a reader of lines takes the character for anything but a sign to show.
bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character <= 0x9F) || character == 0x2028 ||
         character == 0x2029;
}

// A line of standard error. Names and replies of printers are in it: what could end it early or
// command a terminal, and what is not UTF-8, is shown byte by byte as the log daemons do, '#' and
// three octal digits. It is put together in place, since an entry may say that memory is exhausted.
class Line {
 public:
  Line() = default;
  ~Line() {
    put('\n');
    flush();
  }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  void add(std::string_view text) {
    while (!text.empty()) {
      const auto first = firstUtf8Character(text);
      const bool isShown = first && !isControl(first->character);
      const std::string_view bytes = text.substr(0, first ? first->bytes : 1);
      for (const char byte : bytes)
        isShown ? put(byte) : putOctal(static_cast<unsigned char>(byte));
      text.remove_prefix(bytes.size());
    }
  }

 private:
  void put(char byte) {
    if (mSize == mBytes.size()) flush();
    mBytes[mSize++] = byte;
  }

  void putOctal(unsigned char byte) {
    put('#');
    for (const int shift : {6, 3, 0}) put(static_cast<char>('0' + (byte >> shift & 7)));
  }

  void flush() {
    writeToStandardError({mBytes.data(), mSize});
    mSize = 0;
  }

  std::array<char, 4096> mBytes;  // what a pipe takes as one
  std::size_t mSize = 0;
};

// Mirrors entries by itself: the host would write their bytes as they are. The log's own entries
// need no such care, since each is a datagram of its own.
class PosixSystemLog : public SystemLog {
 public:
  void open(const char* identity, int options, int facility) override {
    mMirrorsAs = (options & kMirrorToStandardError) != 0 ? identity : nullptr;
    ::openlog(identity, options & ~kMirrorToStandardError, facility);
  }

  void write(int priority, const char* text) override {
    if (mMirrorsAs != nullptr) mirror(text);
    ::syslog(priority, "%s", text);
  }

  void close() override {
    mMirrorsAs = nullptr;
    ::closelog();
  }

 private:
  void mirror(const char* text) const {
    Line line;
    line.add(mMirrorsAs);
    line.add(": ");
    line.add(text);
  }

  const char* mMirrorsAs = nullptr;  // the identity; null when entries are not mirrored
};

}  // namespace

std::unique_ptr<SystemLog> makePosixSystemLog() { return std::make_unique<PosixSystemLog>(); }

}  // namespace platform
