#include "platform/posix/StandardErrorLine.h"

#include <unistd.h>

#include <cerrno>

#include "platform/Utf8.h"

namespace platform {
namespace {

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

}  // namespace

StandardErrorLine::~StandardErrorLine() {
  put('\n');
  flush();
}

void StandardErrorLine::add(std::string_view text) {
  while (!text.empty()) {
    const auto first = firstUtf8Character(text);
    const bool isShown = first && !isControl(first->character);
    const std::string_view bytes = text.substr(0, first ? first->bytes : 1);
    for (const char byte : bytes) isShown ? put(byte) : putOctal(static_cast<unsigned char>(byte));
    text.remove_prefix(bytes.size());
  }
}

void StandardErrorLine::put(char byte) {
  if (mSize == mBytes.size()) flush();
  mBytes[mSize++] = byte;
}

void StandardErrorLine::putOctal(unsigned char byte) {
  put('#');
  for (const int shift : {6, 3, 0}) put(static_cast<char>('0' + (byte >> shift & 7)));
}

void StandardErrorLine::flush() {
  writeToStandardError({mBytes.data(), mSize});
  mSize = 0;
}

}  // namespace platform
