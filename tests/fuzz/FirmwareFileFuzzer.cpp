// Any bytes may stand in a firmware file: it is loaded whole, and its version is what the end of
// the file says when that is well formed, and 0 otherwise. The loader takes some hundred times as
// long as what it asks of the end of the file: one size in eight goes through it. Half of the
// inputs are made well-formed.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "FakeBundle.h"
#include "FakeFiles.h"
#include "FirmwareLoader.h"
#include "LogRecorder.h"
#include "PlatformIdBlock.h"
#include "platform/Text.h"
#include "require.h"

namespace {

constexpr std::size_t kLoadedSizes = 8;

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

// What the loader and the tools ask of the end of the file.
void checkEnd(const std::string& file, const Expected& expected) {
  const PlatformIdBlock end(file);
  std::string entry;
  unsigned int version = 0;
  if (end.version() != 3) {
    entry = "Invalid platform ID version: got " + std::to_string(end.version()) + ", expected 3";
  } else if (end.fieldCount() != 3) {
    entry = "Invalid number of platform ID fields: got " + std::to_string(end.fieldCount()) +
            ", expected 3";
  } else {
    const platform::Text text = end.firmwareVersion();
    const std::string shown = text ? std::string(text.utf8()).c_str() : "<null>";
    entry = "Firmware version in file: " + shown;
    version = static_cast<unsigned int>(text.intValue());
  }
  require(entry == expected.entry && version == expected.version);
}

void checkLoader(const std::string& file, const Expected& expected) {
  FakeBundle bundle;
  FakeFiles files;
  files.addDirectory("/resources");
  files.addFile("/resources/product.tarn.bin", file);
  const LogRecorder recorder({.bundle = &bundle, .files = &files});
  platform::FileBytes image;
  unsigned int version = 4711;
  require(getFirmware(L"MDL:KX350T;", image, version));
  require(std::equal(image.begin(), image.end(), file.begin(), file.end()));
  require(version == expected.version);
  require(recorder.entries().size() == 1 && recorder.entries().front().text == expected.entry);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file(data, data + size);
  if (file.empty()) return 0;

  const Expected expected = readEnd(file);
  checkEnd(file, expected);
  if (size % kLoadedSizes == 0) checkLoader(file, expected);
  return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

// Format version, length and number of texts are made right again in half of the inputs.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  std::minstd_rand random(seed);
  const std::size_t changed = LLVMFuzzerMutate(data, size, most);
  if (changed < 5 || random() % 2 == 0) return changed;

  const std::size_t length = std::min<std::size_t>(changed - 2, 3 + random() % 253);
  std::uint8_t* const block = data + changed - 2 - length;
  std::replace(block, block + length, std::uint8_t{0},
               static_cast<std::uint8_t>('0' + random() % 10));
  // Each text may be empty.
  std::array<std::size_t, 3> ends{random() % length, random() % length, length - 1};
  if (ends[0] == ends[1] || ends[1] == ends[2] || ends[0] == ends[2]) ends = {0, 1, 2};
  for (const std::size_t end : ends) block[end] = 0;
  data[changed - 2] = 3;
  data[changed - 1] = static_cast<std::uint8_t>(length);
  return changed;
}
