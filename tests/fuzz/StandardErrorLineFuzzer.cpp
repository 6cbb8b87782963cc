// Whatever is in an entry, standard error gets one line of plain text from which the entry can be
// read back, as long as it holds no '#' of its own.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "platform/Text.h"
#include "platform/posix/StandardErrorLine.h"
#include "require.h"

namespace {

// What the line writes, with standard error put aside meanwhile.
std::string lineOf(const std::string& entry) {
  const int file = ::memfd_create("line", MFD_CLOEXEC);
  const int standardError = ::dup(STDERR_FILENO);
  ::dup2(file, STDERR_FILENO);
  {
    platform::StandardErrorLine line;
    line.add(entry);
  }
  ::dup2(standardError, STDERR_FILENO);
  ::close(standardError);
  std::string written(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)), '\0');
  require(::pread(file, written.data(), written.size(), 0) == static_cast<ssize_t>(written.size()));
  ::close(file);
  return written;
}

std::string readBack(const std::string& line) {
  std::string entry;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isOctal = line[i] == '#';
    entry += isOctal ? static_cast<char>(std::stoi(line.substr(i + 1, 3), nullptr, 8)) : line[i];
    if (isOctal) i += 3;
  }
  return entry;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string entry(data, data + size);
  std::string line = lineOf(entry);
  require(line.ends_with('\n'));
  line.pop_back();
  const platform::Text text = platform::Text::fromUtf8(line);
  require(!text.isNull());
  for (const wchar_t character : text.wide()) {
    require(character >= 0x20 && (character < 0x7F || character > 0x9F));
    require(character != 0x2028 && character != 0x2029);
  }
  if (entry.find('#') == std::string::npos) require(readBack(line) == entry);
  return 0;
}
