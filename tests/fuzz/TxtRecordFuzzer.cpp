// Whatever the network sends as a TXT record is read without harm, and every value that is found
// stands in it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/Text.h"
#include "platform/TxtRecord.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const platform::TxtRecord record(std::span(data, size));
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const std::string key : {"usb_MFG", "usb_MDL", "a", ""}) {
    const auto value = record.value(key);
    if (!value) continue;
    const std::string entry = key + (value->empty() ? "" : "=") + std::string(*value);
    if (key.empty() || bytes.find(entry) == std::string_view::npos) std::abort();
    platform::Text::fromUtf8(*value);
  }
  return 0;
}
