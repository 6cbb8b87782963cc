// The cells whose fault is on the computer: the firmware file, the user, what the system has no
// more of. The update goes over USB.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Cell.h"
#include "platform/Status.h"

enum class LocalFault {
  Missing,           // there is no firmware file
  Directory,         // a directory has its name
  Pipe,              // a named pipe has its name
  DanglingLink,      // a link has its name that leads nowhere
  Bytes,             // it holds `bytes`
  NoResources,       // the program's directory for it is gone
  UnknownResources,  // the program cannot say where it is
  NoBundle,          // the program does not know where it is itself
  SizeFails,         // the file system answers `status`
  OpenFails,
  ReadFails,        // after half of the file
  Truncated,        // half of the file is gone when it is read
  NoDescriptors,    // the process may open no more files
  Quit,             // the user chooses Quit in `step`, and means it
  AnotherDownload,  // the user asks for a second download in `step`
};

struct LocalCell : Cell {
  LocalFault fault = LocalFault::Missing;
  std::size_t step = 0;
  std::string bytes;
  platform::OSStatus status = 0;
};

const std::vector<LocalCell>& localCells();
