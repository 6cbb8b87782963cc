#include "ImageFile.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace {

std::runtime_error failure(const std::string& what, const std::string& path,
                           const std::error_code& error) {
  return std::runtime_error("cannot " + what + " \"" + path + "\": " + error.message());
}

std::runtime_error failure(const std::string& what, const std::string& path) {
  return failure(what, path, std::error_code(errno, std::generic_category()));
}

}  // namespace

std::vector<char> readImageFile(const std::string& path) {
  // Looked at before it is opened: a pipe would wait there for another program to write.
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw std::runtime_error("cannot read \"" + path + "\": not a regular file");
  }
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) throw failure("open", path);
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
  std::error_code error(errno != 0 ? errno : EIO, std::generic_category());
  if (file) std::filesystem::rename(unfinished, path, error);
  if (!error) return;
  std::error_code ignored;
  std::filesystem::remove(unfinished, ignored);
  throw failure("write", path, error);
}
