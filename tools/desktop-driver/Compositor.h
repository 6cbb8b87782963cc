// A Wayland compositor for one program on a virtual desktop. It is a window of 1280 x 800 pixels,
// full screen and so without a frame, in the desktop's upper left corner: keys of the X server
// reach the program through it, and it is in pictures of the desktop. Full screen, it gets no
// pointer. The X server does not know the program's windows.
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
