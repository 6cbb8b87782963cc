#include "ImageFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace {

std::runtime_error failure(const std::string& what, const std::string& path) {
  return std::runtime_error("cannot " + what + " \"" + path + "\": " + std::strerror(errno));
}

}  // namespace

std::vector<char> readImageFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) throw failure("open", path);
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    throw std::runtime_error("cannot read \"" + path + "\": not a regular file");
  }
  std::vector<char> image(static_cast<std::size_t>(file.tellg()));
  file.seekg(0);
  if (!file.read(image.data(), static_cast<std::streamsize>(image.size()))) {
    throw failure("read", path);
  }
  return image;
}

void writeImageFile(const std::string& path, const std::vector<char>& image) {
  const std::string unfinished = path + ".new" + std::to_string(::getpid());
  std::ofstream file(unfinished, std::ios::binary);
  if (!file) throw failure("create", path);
  file.write(image.data(), static_cast<std::streamsize>(image.size()));
  file.close();
  if (file && std::rename(unfinished.c_str(), path.c_str()) == 0) return;
  const std::runtime_error error = failure("write", path);
  std::remove(unfinished.c_str());
  throw error;
}
