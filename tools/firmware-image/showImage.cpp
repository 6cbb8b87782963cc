#include "showImage.h"

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <span>
#include <string>
#include <vector>

#include "Branding.h"
#include "CalcCheckSum.h"
#include "ImageFile.h"
#include "PlatformIdBlock.h"
#include "platform/Text.h"
#include "sha256.h"

namespace {

using Bytes = std::span<const char>;

void print(const std::string& label, const std::string& text) {
  constexpr std::size_t kTextColumn = 19;
  std::cout << label << std::string(kTextColumn - label.size(), ' ') << text << '\n';
}

std::string hexadecimal(unsigned char byte) {
  static constexpr char kDigits[] = "0123456789abcdef";
  return {kDigits[byte >> 4], kDigits[byte & 0xF]};
}

// In quotes, with everything but printable ASCII as \xNN.
std::string quoted(Bytes bytes) {
  std::string text = "\"";
  for (const char byte : bytes) {
    const bool isPlain = byte >= ' ' && byte <= '~' && byte != '"' && byte != '\\';
    text += isPlain ? std::string(1, byte) : "\\x" + hexadecimal(static_cast<unsigned char>(byte));
  }
  return text + '"';
}

std::string quoted(const platform::Text& text) { return quoted(Bytes(text.utf8())); }

// As the printer's engineers write it: the number, and the two bytes as they go over the wire.
std::string checksumOf(const std::vector<char>& image) {
  // The allocator aligns a vector's bytes for any type.
  const void* const data = image.data();
  const unsigned sum = CalcCheckSum(static_cast<const unsigned short*>(data), image.size());
  const std::string high = hexadecimal(static_cast<unsigned char>(sum >> 8));
  const std::string low = hexadecimal(static_cast<unsigned char>(sum & 0xFF));
  return "0x" + high + low + " (bytes " + high + ' ' + low + " of the burn command)";
}

void printFields(Bytes block) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < block.size(); ++i) {
    if (block[i] != '\0') continue;
    print("  field", quoted(block.subspan(begin, i - begin)));
    begin = i + 1;
  }
  if (begin < block.size()) print("  without an end", quoted(block.subspan(begin)));
}

bool printTrailer(const std::vector<char>& image) {
  const PlatformIdBlock block(image);
  const bool hasVersion = block.version() == PlatformIdBlock::kExpectedVersion;
  const bool hasFields = block.fieldCount() == PlatformIdBlock::kExpectedFields;
  const unsigned length = image.empty() ? 0 : static_cast<unsigned char>(image.back());
  print("Platform ID:", "version " + std::to_string(block.version()) + ", length " +
                            std::to_string(length) + ", fields " +
                            std::to_string(block.fieldCount()));
  printFields(block.bytes());
  if (!hasVersion) print("  malformed", "the version must be 3");
  if (length > block.bytes().size()) print("  malformed", "longer than the file before it");
  if (!hasFields) print("  malformed", "there must be 3 fields");
  if (!hasVersion || !hasFields) {
    print("Firmware version:", "0, unknown: the updater takes every printer for up to date");
    return false;
  }
  const platform::Text version = block.firmwareVersion();
  const auto number = static_cast<std::uint32_t>(version.intValue());
  print("Firmware version:", std::to_string(number) + ", from " +
                                 (version.isNull() ? "a text that is not UTF-8" : quoted(version)));
  return true;
}

void printPrinters(const std::string& fileName) {
  const platform::Text name = platform::Text::fromUtf8(fileName);
  if (Branding::sFirmwareSpecList.empty()) Branding::buildFirmwareSpecList();
  bool isKnown = false;
  for (const Branding::FirmwareSpec& spec : Branding::sFirmwareSpecList) {
    if (name.isNull() || spec.fileName != name.wide()) continue;
    isKnown = true;
    print(
        "For printers with:",
        "MDL " + quoted(platform::Text::fromWide(spec.modelPattern)) + ", " +
            (spec.licPattern.empty() ? "LIC empty or absent"
                                     : "LIC " + quoted(platform::Text::fromWide(spec.licPattern))));
  }
  if (!isKnown) print("For printers with:", "nothing: the updater looks for no file of this name");
}

}  // namespace

bool showImage(const Arguments& arguments) {
  const std::string path = arguments.onlyOperand("the name of the file to show");
  const std::vector<char> image = readImageFile(path);
  print("File:", path);
  print("Size:", std::to_string(image.size()) + " bytes");
  print("SHA-256:", sha256(image));
  print("Checksum:", checksumOf(image));
  const bool isWellFormed = printTrailer(image);
  printPrinters(std::filesystem::path(path).filename().native());
  return isWellFormed;
}
