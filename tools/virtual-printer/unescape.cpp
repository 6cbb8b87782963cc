#include "unescape.h"

#include <charconv>
#include <stdexcept>

namespace virtualprinter {

std::string unescape(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      result.push_back(text[i]);
    } else if (text.compare(i, 2, "\\\\") == 0) {
      result.push_back('\\');
      i += 1;
    } else {
      unsigned byte = 0;
      const char* digits = text.data() + i + 2;
      if (text.compare(i, 2, "\\x") != 0 || i + 4 > text.size() ||
          std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
        throw std::invalid_argument("\"" + text +
                                    "\": after \\ comes x and two hexadecimal digits");
      }
      result.push_back(static_cast<char>(byte));
      i += 3;
    }
  }
  return result;
}

}  // namespace virtualprinter
