#include <array>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "Branding.h"
#include "FirmwareLoader.h"
#include "JsonLines.h"
#include "PlatformIdBlock.h"
#include "commands.h"
#include "failure.h"
#include "legibleText.h"
#include "platform/FileBytes.h"
#include "platform/Text.h"

using nlohmann::ordered_json;

namespace {

struct Firmware {
  std::size_t size = 0;
  unsigned int version = 0;
  std::vector<std::string> texts;  // of its platform ID
};

std::vector<std::string> textsOf(const platform::FileBytes& image) {
  std::vector<std::string> texts(1);
  for (const char byte : PlatformIdBlock(image).bytes()) {
    if (byte != '\0') {
      texts.back() += byte;
    } else {
      texts.emplace_back();
    }
  }
  texts.pop_back();
  return texts;
}

std::string narrow(const std::wstring& text) {
  return std::string(platform::Text::fromWide(text).utf8());
}

// The printers that get a file of this name, as "MDL KX350T, LIC QT725013".
std::vector<std::string> printersFor(const std::wstring& name) {
  if (Branding::sFirmwareSpecList.empty()) Branding::buildFirmwareSpecList();
  std::vector<std::string> printers;
  for (const Branding::FirmwareSpec& spec : Branding::sFirmwareSpecList) {
    if (spec.fileName != name) continue;
    printers.push_back("MDL " + narrow(spec.modelPattern) + ", LIC " + narrow(spec.licPattern));
  }
  return printers;
}

void printText(const std::string& file, const Firmware& firmware,
               const std::vector<std::string>& printers) {
  std::cout << "File:     " << legibleText(file) << '\n'
            << "Size:     " << firmware.size << " bytes\n"
            << "Version:  " << firmware.version << '\n';
  for (const std::string& text : firmware.texts) {
    std::cout << "Text:     " << legibleText(text) << '\n';
  }
  for (const std::string& printer : printers) std::cout << "Printers: " << printer << '\n';
}

void printJson(const std::string& file, const Firmware& firmware,
               const std::vector<std::string>& printers) {
  writeLine(std::cout, jsonEvent("firmware", {{"file", file},
                                              {"bytes", firmware.size},
                                              {"version", firmware.version},
                                              {"texts", firmware.texts},
                                              {"printers", printers}}));
}

}  // namespace

int showFirmware(const Options& options) {
  const std::filesystem::path file = std::filesystem::absolute(options.file);
  const std::wstring name = platform::Text::fromUtf8(file.filename().native()).wide();
  Firmware firmware;
  platform::FileBytes image;
  if (!loadFirmwareFile(file.parent_path(), name, image, firmware.version)) {
    return fail(options.output, kFailed,
                legibleText(options.file) +
                    ": cannot be read as a firmware file. The log says why (-e shows it).");
  }
  firmware.size = image.size();
  firmware.texts = textsOf(image);
  const auto print = options.output == Options::Output::Json ? printJson : printText;
  print(options.file, firmware, printersFor(name));
  return kDone;
}
