#include "platform/Redaction.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>
#include <vector>

namespace platform {
namespace {

constexpr std::size_t kHardwareAddress = 17;  // 00:11:22:33:44:55

bool isHexDigit(char character) {
  return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

// Bytes of other letters than A to Z count, too.
bool isInWord(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return std::isalnum(byte) != 0 || byte == '_' || byte >= 0x80;
}

bool isWord(std::string_view text, std::size_t begin, std::size_t end) {
  return (begin == 0 || !isInWord(text[begin - 1])) && (end == text.size() || !isInWord(text[end]));
}

void hide(std::string& text, std::string_view word, std::string_view instead) {
  if (word.empty()) return;
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
    if (isWord(text, at, at + word.size())) {
      text.replace(at, word.size(), instead);
      at += instead.size();
    } else {
      ++at;
    }
  }
}

// What stands behind `label` up to the end of the line.
void collectBehind(std::string_view text, std::string_view label, std::vector<std::string>& found) {
  for (auto at = text.find(label); at != std::string_view::npos; at = text.find(label, at)) {
    at += label.size();
    at = std::min(text.find_first_not_of(" :=\"", at), text.size());
    const auto end = std::min(text.find_first_of("\"\n", at), text.size());
    found.emplace_back(text.substr(at, end - at));
  }
}

// In "Downloading firmware to USB printer: NAME(SERIAL)".
void collectOfDownloads(std::string_view text, std::vector<std::string>& found) {
  constexpr std::string_view kEntry = "Downloading firmware to USB printer: ";
  for (auto at = text.find(kEntry); at != std::string_view::npos; at = text.find(kEntry, at + 1)) {
    const auto line = text.substr(at, text.find('\n', at) - at);
    const auto opening = line.rfind('(');
    if (opening == std::string_view::npos || !line.ends_with(')')) continue;
    found.emplace_back(line.substr(opening + 1, line.size() - opening - 2));
  }
}

void hideSerialNumbers(std::string& text) {
  std::vector<std::string> found;
  collectBehind(text, "serial number ", found);
  collectBehind(text, "Serial Number", found);
  collectOfDownloads(text, found);
  std::ranges::sort(found);
  found.erase(std::unique(found.begin(), found.end()), found.end());
  for (const std::string& serial : found) hide(text, serial, "<serial number>");
}

bool isHardwareAddress(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i % 3 == 2 ? text[i] != ':' : !isHexDigit(text[i])) return false;
  }
  return true;
}

void hideHardwareAddresses(std::string& text) {
  for (std::size_t at = 0; at + kHardwareAddress <= text.size(); ++at) {
    const std::string_view address(text.data() + at, kHardwareAddress);
    if (!isHardwareAddress(address) || !isWord(text, at, at + kHardwareAddress)) continue;
    text.replace(at, kHardwareAddress, "<hardware address>");
  }
}

}  // namespace

std::string redacted(const std::string& text, const PersonalNames& names) {
  std::string shown = text;
  hideSerialNumbers(shown);
  hideHardwareAddresses(shown);
  hide(shown, names.home, "~");
  hide(shown, names.user, "<user>");
  hide(shown, names.computer, "<computer>");
  hide(shown, std::string_view(names.computer).substr(0, names.computer.find('.')), "<computer>");
  return shown;
}

}  // namespace platform
