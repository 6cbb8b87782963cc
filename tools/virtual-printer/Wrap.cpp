#include "Wrap.h"

#include <sstream>

namespace virtualprinter {

std::string wrapped(std::string_view text, std::size_t column) {
  constexpr std::size_t kWidth = 100;
  std::istringstream words{std::string(text)};
  std::string lines;
  std::size_t used = column;
  for (std::string word; words >> word; used += word.size()) {
    if (used > column && used + 1 + word.size() > kWidth) {
      lines += "\n" + std::string(column, ' ');
      used = column;
    } else if (used > column) {
      lines += ' ';
      ++used;
    }
    lines += word;
  }
  return lines + "\n";
}

}  // namespace virtualprinter
