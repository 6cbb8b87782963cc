#include "showImage.h"

#include <filesystem>
#include <iostream>
#include <span>
#include <string>
#include <vector>

#include "Branding.h"
#include "CalcCheckSum.h"
#include "LoadedFile.h"
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
std::string checksumOf(const platform::FileBytes& image) {
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

std::string sizeOf(const LoadedFile& file) {
  std::string size = std::to_string(file.size) + " bytes";
  if (file.size == file.image.size()) return size;
  return size + ", of which the updater takes the first " + std::to_string(file.image.size());
}

void printPlatformId(const LoadedFile& file) {
  const PlatformIdBlock block(file.image);
  const unsigned length =
      file.image.empty() ? 0 : static_cast<unsigned char>(Bytes(file.image).back());
  print("Platform ID:", "version " + std::to_string(block.version()) + ", length " +
                            std::to_string(length) + ", fields " +
                            std::to_string(block.fieldCount()));
  printFields(block.bytes());
  if (length > block.bytes().size()) print("  too long", "for the file before it");
  for (const std::string& problem : file.problems) print("  malformed", problem);
}

void printVersion(const LoadedFile& file) {
  const platform::Text text = PlatformIdBlock(file.image).firmwareVersion();
  const std::string origin = !file.problems.empty() ? "unknown"
                             : text.isNull()        ? "from a text that is not UTF-8"
                                                    : "from " + quoted(text);
  print("Firmware version:", std::to_string(file.version) + ", " + origin);
  if (file.version == 0) {
    print("  never sent", "every printer counts as up to date");
  } else {
    print("  sent", "where the printer's version is lower");
  }
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
  const LoadedFile file = loadAsTheUpdater(path);
  print("File:", path);
  print("Size:", sizeOf(file));
  print("SHA-256:", sha256(file.image));
  print("Checksum:", checksumOf(file.image));
  printPlatformId(file);
  printVersion(file);
  printPrinters(std::filesystem::path(path).filename().native());
  return file.problems.empty();
}
