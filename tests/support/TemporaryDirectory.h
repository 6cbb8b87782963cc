// A directory of a test's own, removed with all that is in it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "fwupdate-test.XXXXXX").string();
    mPath = ::mkdtemp(name.data());
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(mPath); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return mPath; }

 private:
  std::filesystem::path mPath;
};
