#include "registryText.h"

#include <cstddef>
#include <string_view>

std::string registryText(const platform::Text& text) {
  constexpr std::size_t kBufferSize = 256;
  const std::string_view bytes = text.utf8();
  if (bytes.size() + 1 > kBufferSize) return {};
  return std::string(bytes.substr(0, bytes.find('\0')));
}
