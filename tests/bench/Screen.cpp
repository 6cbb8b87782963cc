#include "Screen.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>

#include <stdexcept>
#include <thread>

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 30s;
constexpr auto kPace = 2ms;
constexpr auto kSettled = 500ms;

// Windows come and go while they are looked at.
int ignoreError(Display*, XErrorEvent*) { return 0; }

}  // namespace

Screen::Screen() : mDisplay(XOpenDisplay(nullptr)) {
  if (!mDisplay) throw std::runtime_error("the X server does not answer");
  XSetErrorHandler(ignoreError);
  XSelectInput(mDisplay, DefaultRootWindow(mDisplay), PropertyChangeMask);
}

Screen::~Screen() { XCloseDisplay(mDisplay); }

void Screen::waitForActiveWindow(pid_t process) {
  const auto deadline = Clock::now() + kPatience;
  while ((mWindow = activeWindowOf(process)) == 0) {
    if (Clock::now() > deadline) throw std::runtime_error("the window does not appear");
    pollfd connection{ConnectionNumber(mDisplay), POLLIN, 0};
    if (XPending(mDisplay) == 0) poll(&connection, 1, 10);
    while (XPending(mDisplay) > 0) {
      XEvent event;
      XNextEvent(mDisplay, &event);
    }
  }
}

Screen::Picture Screen::picture() const {
  XWindowAttributes attributes{};
  XGetWindowAttributes(mDisplay, mWindow, &attributes);
  XImage* image = XGetImage(mDisplay, mWindow, 0, 0, static_cast<unsigned>(attributes.width),
                            static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
  if (!image) return {};
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(image->data);
  Picture picture(bytes,
                  bytes + static_cast<std::ptrdiff_t>(image->bytes_per_line) * image->height);
  XDestroyImage(image);
  return picture;
}

Clock::time_point Screen::lastPainted() const {
  auto changed = Clock::now();
  for (Picture last = picture(); Clock::now() - changed < kSettled;) {
    std::this_thread::sleep_for(kPace);
    Picture now = picture();
    if (now == last) continue;
    changed = Clock::now();
    last = std::move(now);
  }
  return changed;
}

unsigned long Screen::activeWindowOf(pid_t process) const {
  const Window window = numberProperty(DefaultRootWindow(mDisplay), "_NET_ACTIVE_WINDOW");
  if (window == 0) return 0;
  return numberProperty(window, "_NET_WM_PID") == static_cast<unsigned long>(process) ? window : 0;
}

unsigned long Screen::numberProperty(unsigned long window, const char* name) const {
  Atom type = 0;
  int format = 0;
  unsigned long items = 0;
  unsigned long rest = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(mDisplay, window, XInternAtom(mDisplay, name, False), 0, 1, False,
                     AnyPropertyType, &type, &format, &items, &rest, &value);
  const unsigned long number =
      value && items == 1 && format == 32 ? *reinterpret_cast<unsigned long*>(value) : 0;
  if (value) XFree(value);
  return number;
}

double milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace bench
