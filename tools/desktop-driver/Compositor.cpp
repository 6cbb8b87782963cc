#include "Compositor.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "VirtualDesktop.h"

namespace desktop {
namespace {

using namespace std::chrono_literals;

constexpr char kSocket[] = "compositor";
constexpr auto kPatience = 20s;

std::filesystem::path runtimeDirectory(const ChildProcess::Environment& environment) {
  const auto variable = std::find_if(environment.begin(), environment.end(), [](const auto& each) {
    return each.first == "XDG_RUNTIME_DIR";
  });
  return variable->second;
}

}  // namespace

// This compositor does without OpenGL, for which a program would load a driver and not use it.
Compositor::Compositor(const VirtualDesktop& desktop, const std::filesystem::path& directory)
    : mEnvironment({{"QT_QPA_PLATFORM", "wayland"},
                    {"QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none"},
                    {"WAYLAND_DISPLAY", kSocket}}),
      mProcess({"weston", "--backend=x11-backend.so", "--width=1280", "--height=800",
                "--fullscreen", "--shell=kiosk-shell.so", "--use-pixman", "--no-config",
                "--idle-time=0", std::string("--socket=") + kSocket},
               directory / "compositor.log", desktop.environment()) {
  const std::filesystem::path socket = runtimeDirectory(desktop.environment()) / kSocket;
  if (!waitUntil([&] { return std::filesystem::exists(socket); }, kPatience)) {
    throw std::runtime_error("the compositor does not start");
  }
}

}  // namespace desktop
