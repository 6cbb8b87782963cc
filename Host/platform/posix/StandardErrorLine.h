// A line of standard error, written when it goes. Names and replies of printers are in it: what
// could end it early or command a terminal, and what is not UTF-8, is shown byte by byte as log
// daemons do,
// '#' and three octal digits. It is put together in place, since an entry may say that memory is
// exhausted. Used by the system log.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace platform {

class StandardErrorLine {
 public:
  StandardErrorLine() = default;

  // Writes the line. What cannot be written is dropped: nobody may be reading.
  ~StandardErrorLine();

  StandardErrorLine(const StandardErrorLine&) = delete;
  StandardErrorLine& operator=(const StandardErrorLine&) = delete;

  void add(std::string_view text);

 private:
  void put(char byte);
  void putOctal(unsigned char byte);
  void flush();

  std::array<char, 4096> mBytes;  // what a pipe takes as one
  std::size_t mSize = 0;
};

}  // namespace platform
