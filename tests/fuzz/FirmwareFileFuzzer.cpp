// Any bytes may stand in a firmware file: it is loaded whole, and its version is what the end of
// the file says when that is well formed, and 0 otherwise.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "FakeBundle.h"
#include "FakeFiles.h"
#include "FirmwareLoader.h"
#include "LogRecorder.h"
#include "platform/Text.h"

namespace {

struct Expected {
  std::string entry;
  unsigned int version = 0;
};

// The end of the file read in another way than the loader's: from the front.
Expected readEnd(const std::string& file) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(file[i]); };
  const unsigned version = file.size() < 2 ? 0 : byteAt(file.size() - 2);
  if (version != 3) {
    return {"Invalid platform ID version: got " + std::to_string(version) + ", expected 3"};
  }
  const std::size_t end = file.size() - 2;
  const std::size_t begin = byteAt(end + 1) > end ? end : end - byteAt(end + 1);
  const auto zeros = std::count(file.begin() + static_cast<std::ptrdiff_t>(begin),
                                file.begin() + static_cast<std::ptrdiff_t>(end), '\0');
  if (zeros != 3) {
    return {"Invalid number of platform ID fields: got " + std::to_string(zeros) + ", expected 3"};
  }
  const auto text = platform::Text::fromUtf8(file.substr(file.find('\0', begin) + 1, 8));
  const std::string shown = text ? std::string(text.utf8()).c_str() : "<null>";
  return {"Firmware version in file: " + shown, static_cast<unsigned int>(text.intValue())};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file(data, data + size);
  if (file.empty()) return 0;

  FakeBundle bundle;
  FakeFiles files;
  files.addDirectory("/resources");
  files.addFile("/resources/product.tarn.bin", file);
  const LogRecorder recorder({.bundle = &bundle, .files = &files});
  platform::FileBytes image;
  unsigned int version = 4711;
  const bool loaded = getFirmware(L"MDL:KX350T;", image, version);

  const Expected expected = readEnd(file);
  const bool isRight = loaded && std::equal(image.begin(), image.end(), file.begin(), file.end()) &&
                       version == expected.version && recorder.entries().size() == 1 &&
                       recorder.entries().front().text == expected.entry;
  if (!isRight) std::abort();
  return 0;
}
