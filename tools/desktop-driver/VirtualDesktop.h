// A desktop of its own for one program under the eyes of a test: an X server without a screen, a
// window manager, a session bus and the assistive-technology bus. Input goes in as clicks and keys
// of the X server; what is on the screen comes out as accessible objects (Node.h) and as pictures.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ChildProcess.h"

struct _XDisplay;

namespace desktop {

class VirtualDesktop {
 public:
  // Log files go to `directory`, which must exist. Also sets the environment of this program, so
  // there can be one desktop for each program only. `windowManager` is the command of one that
  // follows the EWMH. Throws std::runtime_error.
  explicit VirtualDesktop(const std::filesystem::path& directory, int width = 1280,
                          int height = 800, const std::string& windowManager = "openbox");
  ~VirtualDesktop();

  VirtualDesktop(const VirtualDesktop&) = delete;
  VirtualDesktop& operator=(const VirtualDesktop&) = delete;

  // What a program needs to appear on this desktop.
  const ChildProcess::Environment& environment() const { return mEnvironment; }

  void click(int x, int y, int times = 1);

  // A key by its X name ("Return", "Escape", "a"), with modifiers before it: "ctrl+q", "alt+d".
  void press(std::string_view keys);

  // A key without modifiers, which repeats until it is let go.
  void holdDown(std::string_view key);
  void letGo(std::string_view key);

  // Asks a window to close, as its frame's close button does. False when no window has that title.
  bool closeWindow(std::string_view title);

  // Width and height in pixels, without the frame; none when no window has that title.
  std::optional<std::pair<int, int>> windowSize(std::string_view title) const;

  // Its upper left corner on the screen, without the frame.
  std::optional<std::pair<int, int>> windowPlace(std::string_view title) const;

  // To the daemon of the session bus, or to that of the bus which assistive technology has.
  void signalSessionBus(int number) const { mSessionBus->signal(number); }
  void signalAccessibilityBus(int number) const;

  // The X server dies. Nothing can be seen or done on the desktop after that.
  void killServer();

  // Whether what is typed goes to the window with that title.
  bool hasKeyboard(std::string_view title) const;

  // As when its frame is dragged. False when no window has that title.
  bool resizeWindow(std::string_view title, int width, int height);

  // Gives the keyboard to a window of another program, which stays.
  void lookElsewhere();

  // Puts a plain window in front of a place and takes it away again: what is behind it has to be
  // painted anew.
  void coverBriefly(int x, int y, int width, int height);

  // Whether the place has one colour.
  bool isPlain(int x, int y, int width, int height) const;

  // What a paste would insert; empty when no program offers a text.
  std::string clipboard();

  // Writes the whole screen as a PNG file.
  void screenshot(const std::filesystem::path& file) const;

 private:
  void startServer(int width, int height);
  void startWindowManager(const std::string& command);
  void startBuses();

  std::filesystem::path mDirectory;
  std::filesystem::path mRuntimeDirectory;
  ChildProcess::Environment mEnvironment;
  std::unique_ptr<ChildProcess> mServer;
  std::unique_ptr<ChildProcess> mSessionBus;
  std::unique_ptr<ChildProcess> mWindowManager;
  _XDisplay* mDisplay = nullptr;
};

}  // namespace desktop
