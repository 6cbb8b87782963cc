#include "checkFirmware.h"

#include <string>
#include <vector>

#include "FirmwareLoader.h"
#include "platform/FileBytes.h"
#include "platform/Text.h"

namespace {

Finding checkFile(const std::filesystem::path& directory, const std::wstring& name) {
  const std::string file(platform::Text::fromWide(name).utf8());
  Finding finding{false, "Firmware " + file, {}, {}};
  platform::FileBytes image;
  unsigned int version = 0;
  std::error_code none;
  if (!std::filesystem::exists(directory / file, none)) {
    finding.text = "It is missing from " + directory.string() + ".";
    finding.nextStep = "Install the package with the printers' firmware.";
  } else if (!loadFirmwareFile(directory, name, image, version)) {
    finding.text = "It cannot be read.";
    finding.nextStep = "Install the printers' firmware again.";
  } else if (version == 0) {
    finding.text = "It is damaged: it does not say its version, and no printer gets it.";
    finding.nextStep = "Install the printers' firmware again.";
  } else {
    finding.isWell = true;
    finding.text =
        "Version " + std::to_string(version) + ", " + std::to_string(image.size()) + " bytes.";
  }
  return finding;
}

}  // namespace

Findings checkFirmware(const std::optional<std::filesystem::path>& directory) {
  if (!directory) {
    return {{false, "Firmware", "The program does not find its own files.",
             "Install the program again."}};
  }
  Findings findings;
  for (const std::wstring& name : firmwareFileNames()) {
    findings.push_back(checkFile(*directory, name));
  }
  return findings;
}
