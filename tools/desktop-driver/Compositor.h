// A Wayland compositor for one program on a virtual desktop, in a window of 1280 x 800 pixels:
// input of the X server reaches the program through it, and it is in pictures of the desktop. The X
// server does not know the program's windows.
#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "ChildProcess.h"

namespace desktop {

class VirtualDesktop;

class Compositor {
 public:
  enum class Kind {
    Weston,  // full screen, so that it has no frame; it gets no pointer then
    Sway,    // each window of the program is in its upper left corner, without a frame
  };

  // The log goes to `directory`, which must exist. `desktop` outlives this. Throws
  // std::runtime_error.
  Compositor(Kind kind, const VirtualDesktop& desktop, const std::filesystem::path& directory);

  // What a program needs to appear here, on top of the desktop's.
  const ChildProcess::Environment& environment() const { return mEnvironment; }

  // Where its upper left corner is on the desktop.
  std::pair<int, int> place() const;

  // What a paste would insert.
  std::string clipboard() const;

 private:
  const VirtualDesktop& mDesktop;
  const std::filesystem::path mDirectory;
  const std::string mTitle;
  ChildProcess::Environment mEnvironment;
  ChildProcess mProcess;
};

}  // namespace desktop
