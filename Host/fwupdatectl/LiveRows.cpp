#include "LiveRows.h"

namespace {

constexpr const char* kEraseBelow = "\r\x1B[J";
constexpr const char* kCutLongRows = "\x1B[?7l";
constexpr const char* kWrapLongRows = "\x1B[?7h";

}  // namespace

void LiveRows::draw(const std::vector<std::string>& rows) {
  if (rows.empty()) {
    erase();
    return;
  }
  std::string text;
  for (const std::string& row : rows) text += (text.empty() ? "" : "\n") + row;
  text += '\r';
  if (rows.size() > 1) text += "\x1B[" + std::to_string(rows.size() - 1) + "A";
  if (text == mDrawn) return;
  mTerminal << kEraseBelow << kCutLongRows << text << kWrapLongRows << std::flush;
  mDrawn = text;
}

void LiveRows::erase() {
  if (!mDrawn.empty()) mTerminal << kEraseBelow << std::flush;
  mDrawn.clear();
}
