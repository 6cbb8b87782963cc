// A Wayland compositor for one program on a virtual desktop. It is a window of 1280 x 800 pixels,
// so that keys of the X server reach the program through it, and a picture of the desktop is one of
// its screen. The X server's pointer does not reach the program, whose windows the server does not
// know.
#pragma once

#include <filesystem>

#include "ChildProcess.h"

namespace desktop {

class VirtualDesktop;

class Compositor {
 public:
  // The log goes to `directory`, which must exist. `desktop` outlives this. Throws
  // std::runtime_error.
  Compositor(const VirtualDesktop& desktop, const std::filesystem::path& directory);

  // What a program needs to appear here, on top of the desktop's.
  const ChildProcess::Environment& environment() const { return mEnvironment; }

 private:
  ChildProcess::Environment mEnvironment;
  ChildProcess mProcess;
};

}  // namespace desktop
