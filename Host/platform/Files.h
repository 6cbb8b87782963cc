// Reading one file whole. Each operation returns a status: 0, or the host's errno.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "platform/Status.h"

namespace platform {

// An open file; closed when destroyed.
class OpenFile {
 public:
  virtual ~OpenFile() = default;

  // Reads from the start of the file. `actual` is the number of bytes read, also on failure; fewer
  // than asked for at the end of the file.
  virtual OSStatus read(std::span<char> destination, std::size_t& actual) = 0;
};

class Files {
 public:
  virtual ~Files() = default;

  // Succeeds when `directory` names a directory that exists.
  virtual OSStatus checkDirectory(const std::filesystem::path& directory) = 0;

  // `file` becomes the path of the existing entry `name` in `directory`; the name is not searched
  // for anywhere else.
  virtual OSStatus makeReference(const std::filesystem::path& directory, const std::u16string& name,
                                 std::filesystem::path& file) = 0;

  virtual OSStatus dataSize(const std::filesystem::path& file, std::uint64_t& size) = 0;

  // Succeeds when the entry has data to read: EISDIR for a directory, EINVAL for anything else
  // that is not a regular file.
  virtual OSStatus checkDataFork(const std::filesystem::path& file) = 0;

  virtual OSStatus open(const std::filesystem::path& file, std::unique_ptr<OpenFile>& opened) = 0;

  // Says that the `size` bytes of memory from `begin` on, not used so far, are about to take a file
  // whole, so that the host can give that memory in few large pieces. A hint: nothing but speed
  // depends on it.
  virtual void expectWholeFile(void* begin, std::size_t size) = 0;
};

}  // namespace platform
