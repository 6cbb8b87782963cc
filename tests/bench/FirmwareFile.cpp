#include "FirmwareFile.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "Places.h"

namespace bench {

using std::filesystem::path;

path makeFirmware(const path& directory) {
  const path file = directory / kFirmwareName;
  std::filesystem::remove(file);
  const std::string command = "'" + builtProgram("firmware-image") +
                              "' make --version 200 --size " + std::to_string(kFirmwareSize) +
                              " '" + file.string() + "' >/dev/null";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("cannot make " + file.string());
  return file;
}

path installWithFirmware(const path& prefix) {
  const std::string resources = "share/fwupdate";
  std::filesystem::create_directories(prefix / "bin");
  std::filesystem::create_directories(prefix / resources);
  std::filesystem::copy_file(builtProgram("fwupdate"), prefix / "bin/fwupdate");
  std::filesystem::copy(builtFile(resources), prefix / resources,
                        std::filesystem::copy_options::recursive);
  makeFirmware(prefix / resources);
  return prefix / "bin/fwupdate";
}

}  // namespace bench
