#include "Compositor.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "VirtualDesktop.h"

namespace desktop {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 20s;
constexpr char kWestonSocket[] = "compositor";
constexpr char kSwaySocket[] = "wayland-1";  // the first that is free

constexpr char kSwayConfiguration[] = R"(xwayland disable
output * mode 1280x800 background #6d7f8c solid_color
for_window [app_id=".*"] floating enable, border none, move position 0 0
)";

std::filesystem::path runtimeDirectory(const ChildProcess::Environment& environment) {
  const auto variable = std::find_if(environment.begin(), environment.end(), [](const auto& each) {
    return each.first == "XDG_RUNTIME_DIR";
  });
  return variable->second;
}

// They do without OpenGL, for which a driver would be loaded and not used. Sway refuses to start as
// root, and there may be no other user: it has a namespace in which it is one.
std::vector<std::string> command(Compositor::Kind kind, const std::filesystem::path& directory) {
  if (kind == Compositor::Kind::Weston) {
    return {"weston",        "--backend=x11-backend.so",
            "--width=1280",  "--height=800",
            "--fullscreen",  "--shell=kiosk-shell.so",
            "--use-pixman",  "--no-config",
            "--idle-time=0", std::string("--socket=") + kWestonSocket};
  }
  const std::filesystem::path configuration = directory / "compositor.conf";
  std::ofstream(configuration) << kSwayConfiguration;
  return {"env",      "WLR_BACKENDS=x11",    "WLR_RENDERER=pixman", "unshare",
          "--user",   "--map-user=1000",     "--map-group=1000",    "sway",
          "--config", configuration.string()};
}

}  // namespace

Compositor::Compositor(Kind kind, const VirtualDesktop& desktop,
                       const std::filesystem::path& directory)
    : mDesktop(desktop),
      mDirectory(directory),
      mTitle(kind == Kind::Weston ? "Weston Compositor - screen0" : "wlroots - X11-1"),
      mEnvironment({{"QT_QPA_PLATFORM", "wayland"},
                    {"QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none"},
                    {"WAYLAND_DISPLAY", kind == Kind::Weston ? kWestonSocket : kSwaySocket}}),
      mProcess(command(kind, directory), directory / "compositor.log", desktop.environment()) {
  const auto socket = runtimeDirectory(desktop.environment()) / mEnvironment.back().second;
  if (!waitUntil([&] { return std::filesystem::exists(socket) && desktop.windowPlace(mTitle); },
                 kPatience)) {
    throw std::runtime_error("the compositor does not start");
  }
}

std::pair<int, int> Compositor::place() const { return mDesktop.windowPlace(mTitle).value(); }

std::string Compositor::clipboard() const {
  ChildProcess::Environment environment = mDesktop.environment();
  environment.insert(environment.end(), mEnvironment.begin(), mEnvironment.end());
  ChildProcess paste({"wl-paste", "--no-newline"}, mDirectory / "clipboard", environment);
  return paste.waitForExit(kPatience) == 0 ? paste.output() : std::string();
}

}  // namespace desktop
