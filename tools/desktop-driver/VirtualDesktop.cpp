#include "VirtualDesktop.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <atspi/atspi.h>
#include <sys/socket.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "savePicture.h"

namespace desktop {
namespace {

using namespace std::chrono_literals;

constexpr unsigned long kBackground = 0x6d7f8c;
constexpr auto kPatience = 20s;

// Sockets are made in here, whose paths must be short.
std::filesystem::path makeRuntimeDirectory() {
  std::string path = (std::filesystem::temp_directory_path() / "desktop-XXXXXX").string();
  if (!mkdtemp(path.data())) throw std::runtime_error("cannot make a directory for the session");
  return path;
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

KeySym modifierKey(std::string_view name) {
  if (name == "ctrl") return XK_Control_L;
  if (name == "alt") return XK_Alt_L;
  if (name == "shift") return XK_Shift_L;
  throw std::runtime_error("no such modifier: " + std::string(name));
}

KeySym keyNamed(std::string_view name) {
  const KeySym key = XStringToKeysym(std::string(name).c_str());
  if (key == NoSymbol) throw std::runtime_error("no such key: " + std::string(name));
  return key;
}

// The top-level window whose title is `title`, also below a window manager's frame.
std::optional<Window> findWindow(Display* display, Window parent, std::string_view title) {
  XTextProperty text{};
  const Atom netWmName = XInternAtom(display, "_NET_WM_NAME", False);
  if (XGetTextProperty(display, parent, &text, netWmName) && text.value) {
    const bool found = reinterpret_cast<const char*>(text.value) == title;
    XFree(text.value);
    if (found) return parent;
  }
  Window root = 0;
  Window up = 0;
  Window* children = nullptr;
  unsigned count = 0;
  if (!XQueryTree(display, parent, &root, &up, &children, &count)) return std::nullopt;
  const std::vector<Window> list(children, children + count);
  if (children) XFree(children);
  for (const Window child : list) {
    if (const auto found = findWindow(display, child, title)) return found;
  }
  return std::nullopt;
}

// The first number of a property; none when the window does not have it.
std::optional<long> property(Display* display, Window window, const char* name) {
  Atom type = 0;
  int format = 0;
  unsigned long items = 0;
  unsigned long rest = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 1, False,
                     AnyPropertyType, &type, &format, &items, &rest, &value);
  std::optional<long> number;
  if (value && format == 32 && items == 1) number = *reinterpret_cast<const long*>(value);
  if (value) XFree(value);
  return number;
}

// Windows come and go while they are looked at; an error about one that is gone is no failure.
int ignoreError(Display*, XErrorEvent*) { return 0; }

}  // namespace

VirtualDesktop::VirtualDesktop(const std::filesystem::path& directory, int width, int height,
                               const std::string& windowManager)
    : mDirectory(directory), mRuntimeDirectory(makeRuntimeDirectory()) {
  XSetErrorHandler(ignoreError);
  startServer(width, height);
  startBuses();
  startWindowManager(windowManager);
  atspi_init();
}

VirtualDesktop::~VirtualDesktop() {
  atspi_exit();
  if (mDisplay) XCloseDisplay(mDisplay);
  mWindowManager.reset();
  mSessionBus.reset();
  mServer.reset();
  std::error_code ignored;
  std::filesystem::remove_all(mRuntimeDirectory, ignored);
}

void VirtualDesktop::killServer() {
  // Xlib ends a program that loses its connection, and this one is to go on.
  XCloseDisplay(std::exchange(mDisplay, nullptr));
  mServer->signal(SIGKILL);
}

void VirtualDesktop::signalAccessibilityBus(int number) const {
  int socket = -1;
  ucred daemon{};
  socklen_t size = sizeof daemon;
  if (!dbus_connection_get_unix_fd(atspi_get_a11y_bus(), &socket) ||
      getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &daemon, &size) != 0) {
    throw std::runtime_error("the bus of assistive technology has no process");
  }
  kill(daemon.pid, number);
}

void VirtualDesktop::startServer(int width, int height) {
  const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
  // Standard output carries the number of the display that the server chose.
  mServer = std::make_unique<ChildProcess>(
      std::vector<std::string>{
          "sh", "-c",
          "exec Xvfb -displayfd 1 -screen 0 " + size + " -nolisten tcp -noreset -dpi 96 2>\"$0\"",
          (mDirectory / "xvfb.log").string()},
      mDirectory / "display");
  if (!mServer->waitForOutput("\n", kPatience))
    throw std::runtime_error("the X server does not start");
  const std::string display = ":" + firstLine(mServer->output());
  mEnvironment = {{"DISPLAY", display},
                  {"WAYLAND_DISPLAY", ""},
                  {"QT_QPA_PLATFORM", "xcb"},
                  {"QT_ACCESSIBILITY", "1"},
                  {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
                  {"XDG_RUNTIME_DIR", mRuntimeDirectory.string()}};
  for (const auto& [name, value] : mEnvironment) setenv(name.c_str(), value.c_str(), 1);
  unsetenv("WAYLAND_DISPLAY");
  mDisplay = XOpenDisplay(display.c_str());
  if (!mDisplay) throw std::runtime_error("the X server does not answer");
  XSetWindowBackground(mDisplay, DefaultRootWindow(mDisplay), kBackground);
  XClearWindow(mDisplay, DefaultRootWindow(mDisplay));
}

void VirtualDesktop::startBuses() {
  mSessionBus = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                               "--print-address"},
      mDirectory / "session-bus", mEnvironment);
  if (!mSessionBus->waitForOutput("\n", kPatience)) {
    throw std::runtime_error("the session bus does not start");
  }
  const std::string address = firstLine(mSessionBus->output());
  mEnvironment.emplace_back("DBUS_SESSION_BUS_ADDRESS", address);
  setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
}

// A window manager that has just announced itself may leave the first window that asks to be shown
// in its queue, where it looks when something else happens. So a window of our own asks until it is
// shown, before any other does.
void VirtualDesktop::startWindowManager(const std::string& command) {
  mWindowManager = std::make_unique<ChildProcess>(std::vector<std::string>{command},
                                                  mDirectory / "window-manager.log", mEnvironment);
  const Window root = DefaultRootWindow(mDisplay);
  const bool announced = waitUntil(
      [&] { return property(mDisplay, root, "_NET_SUPPORTING_WM_CHECK").has_value(); }, kPatience);
  if (!announced) throw std::runtime_error("the window manager does not start");

  const Window probe = XCreateSimpleWindow(mDisplay, root, 0, 0, 1, 1, 0, 0, 0);
  const auto isManaged = [&] { return property(mDisplay, probe, "WM_STATE") == NormalState; };
  const bool managed = waitUntil(
      [&] {
        XMapWindow(mDisplay, probe);
        return isManaged();
      },
      kPatience);
  XWithdrawWindow(mDisplay, probe, DefaultScreen(mDisplay));
  const bool forgotten = managed && waitUntil([&] { return !isManaged(); }, kPatience);
  XDestroyWindow(mDisplay, probe);
  if (!forgotten) throw std::runtime_error("the window manager does not manage windows");
}

void VirtualDesktop::click(int x, int y, int times) {
  XTestFakeMotionEvent(mDisplay, -1, x, y, CurrentTime);
  for (int i = 0; i < times; ++i) {
    XTestFakeButtonEvent(mDisplay, 1, True, CurrentTime);
    XTestFakeButtonEvent(mDisplay, 1, False, CurrentTime);
  }
  XSync(mDisplay, False);
}

void VirtualDesktop::press(std::string_view keys) {
  std::vector<KeySym> held;
  for (auto plus = keys.find('+'); plus != std::string_view::npos; plus = keys.find('+')) {
    held.push_back(modifierKey(keys.substr(0, plus)));
    keys.remove_prefix(plus + 1);
  }
  held.push_back(keyNamed(keys));

  const auto send = [&](KeySym symbol, bool down) {
    XTestFakeKeyEvent(mDisplay, XKeysymToKeycode(mDisplay, symbol), down, CurrentTime);
  };
  for (const KeySym symbol : held) send(symbol, true);
  std::reverse(held.begin(), held.end());
  for (const KeySym symbol : held) send(symbol, false);
  XSync(mDisplay, False);
}

void VirtualDesktop::holdDown(std::string_view key) {
  XTestFakeKeyEvent(mDisplay, XKeysymToKeycode(mDisplay, keyNamed(key)), True, CurrentTime);
  XSync(mDisplay, False);
}

void VirtualDesktop::letGo(std::string_view key) {
  XTestFakeKeyEvent(mDisplay, XKeysymToKeycode(mDisplay, keyNamed(key)), False, CurrentTime);
  XSync(mDisplay, False);
}

bool VirtualDesktop::closeWindow(std::string_view title) {
  const auto window = findWindow(mDisplay, DefaultRootWindow(mDisplay), title);
  if (!window) return false;
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = *window;
  event.xclient.message_type = XInternAtom(mDisplay, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(mDisplay, "WM_DELETE_WINDOW", False));
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(mDisplay, *window, False, NoEventMask, &event);
  XSync(mDisplay, False);
  return true;
}

std::optional<std::pair<int, int>> VirtualDesktop::windowSize(std::string_view title) const {
  const auto window = findWindow(mDisplay, DefaultRootWindow(mDisplay), title);
  if (!window) return std::nullopt;
  XWindowAttributes attributes{};
  XGetWindowAttributes(mDisplay, *window, &attributes);
  return std::pair(attributes.width, attributes.height);
}

std::optional<std::pair<int, int>> VirtualDesktop::windowPlace(std::string_view title) const {
  const Window root = DefaultRootWindow(mDisplay);
  const auto window = findWindow(mDisplay, root, title);
  if (!window) return std::nullopt;
  int x = 0;
  int y = 0;
  Window child = 0;
  XTranslateCoordinates(mDisplay, *window, root, 0, 0, &x, &y, &child);
  return std::pair(x, y);
}

bool VirtualDesktop::hasKeyboard(std::string_view title) const {
  Window focus = 0;
  int revert = 0;
  XGetInputFocus(mDisplay, &focus, &revert);
  return findWindow(mDisplay, DefaultRootWindow(mDisplay), title) == focus;
}

bool VirtualDesktop::resizeWindow(std::string_view title, int width, int height) {
  const auto window = findWindow(mDisplay, DefaultRootWindow(mDisplay), title);
  if (!window) return false;
  XResizeWindow(mDisplay, *window, static_cast<unsigned>(width), static_cast<unsigned>(height));
  XSync(mDisplay, False);
  return true;
}

void VirtualDesktop::lookElsewhere() {
  const Window root = DefaultRootWindow(mDisplay);
  const Window other = XCreateSimpleWindow(mDisplay, root, 0, 0, 200, 100, 0, 0, kBackground);
  XMapRaised(mDisplay, other);
  const bool isActive = waitUntil(
      [&] { return property(mDisplay, root, "_NET_ACTIVE_WINDOW") == static_cast<long>(other); },
      kPatience);
  if (!isActive) throw std::runtime_error("no other window can be active");
}

void VirtualDesktop::coverBriefly(int x, int y, int width, int height) {
  XSetWindowAttributes attributes{};
  attributes.override_redirect = True;
  attributes.background_pixel = kBackground;
  const Window cover =
      XCreateWindow(mDisplay, DefaultRootWindow(mDisplay), x, y, static_cast<unsigned>(width),
                    static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, CopyFromParent,
                    CWOverrideRedirect | CWBackPixel, &attributes);
  XMapRaised(mDisplay, cover);
  XSync(mDisplay, False);
  XDestroyWindow(mDisplay, cover);
  XSync(mDisplay, False);
}

bool VirtualDesktop::isPlain(int x, int y, int width, int height) const {
  XImage* image =
      XGetImage(mDisplay, DefaultRootWindow(mDisplay), x, y, static_cast<unsigned>(width),
                static_cast<unsigned>(height), AllPlanes, ZPixmap);
  if (!image) throw std::runtime_error("the screen cannot be read");
  bool same = true;
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      same = same && XGetPixel(image, column, row) == XGetPixel(image, 0, 0);
    }
  }
  XDestroyImage(image);
  return same;
}

std::string VirtualDesktop::clipboard() {
  const Atom selection = XInternAtom(mDisplay, "CLIPBOARD", False);
  const Atom utf8 = XInternAtom(mDisplay, "UTF8_STRING", False);
  const Window reader =
      XCreateSimpleWindow(mDisplay, DefaultRootWindow(mDisplay), 0, 0, 1, 1, 0, 0, 0);
  XConvertSelection(mDisplay, selection, utf8, selection, reader, CurrentTime);
  XEvent event{};
  std::string text;
  const bool hasAnswer = waitUntil(
      [&] { return XCheckTypedWindowEvent(mDisplay, reader, SelectionNotify, &event) != 0; },
      kPatience);
  if (hasAnswer && event.xselection.property != None) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* bytes = nullptr;
    XGetWindowProperty(mDisplay, reader, selection, 0, 65536, True, AnyPropertyType, &type, &format,
                       &count, &rest, &bytes);
    if (bytes != nullptr && format == 8) text.assign(reinterpret_cast<char*>(bytes), count);
    if (bytes != nullptr) XFree(bytes);
  }
  XDestroyWindow(mDisplay, reader);
  return text;
}

void VirtualDesktop::screenshot(const std::filesystem::path& file) const {
  const Window root = DefaultRootWindow(mDisplay);
  XWindowAttributes attributes{};
  XGetWindowAttributes(mDisplay, root, &attributes);
  XImage* image = XGetImage(mDisplay, root, 0, 0, static_cast<unsigned>(attributes.width),
                            static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
  if (!image) throw std::runtime_error("the screen cannot be read");
  const bool saved =
      savePicture(image->data, image->width, image->height, image->bytes_per_line, file);
  XDestroyImage(image);
  if (!saved) throw std::runtime_error("cannot write " + file.string());
}

}  // namespace desktop
