// Files, read whole. Each operation tells a status: 0, or the host's errno.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/FileBytes.h"
#include "platform/Status.h"

namespace platform {

// How far the reading of a file came.
struct WholeRead {
  enum class Step { DataFork, Open, Read };

  Step step;               // the last one taken
  OSStatus status;         // its answer
  std::size_t actual = 0;  // the bytes read, also when the read failed
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

  // Makes `bytes` anew, as many as `size` and all zero, and only then takes the steps: finds the
  // data fork (EISDIR for a directory, EINVAL for anything else that is not a regular file), opens
  // it, and fills `bytes` from its start: one read, straight into that memory, short where the file
  // ends before. The step that fails is the last one, and the file is closed again in any case.
  // Never waits for another program to write. Throws std::bad_alloc when there is no such memory.
  virtual WholeRead readWhole(const std::filesystem::path& file, std::size_t size,
                              FileBytes& bytes) = 0;
};

}  // namespace platform
