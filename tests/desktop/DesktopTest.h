// The vocabulary of the desktop tests: the installed program in a real window, virtual printers on
// a private network, and a person who clicks, types or uses a screen reader. Screenshots and the
// program's log of each test stay in the folder of the test's name below the test output.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ChildProcess.h"
#include "Compositor.h"
#include "Node.h"
#include "TemporaryDirectory.h"
#include "VirtualDesktop.h"
#include "VirtualPrinterProcess.h"

class DesktopTest : public testing::Test {
 protected:
  explicit DesktopTest(int width = 1920, int height = 1200,
                       const std::string& windowManager = "openbox");

  // From now on the program starts on a Wayland compositor.
  void useWayland(desktop::Compositor::Kind kind);

  // Announced on the private network; burns and restarts quickly. `options` win.
  std::unique_ptr<VirtualPrinterProcess> startPrinter(const std::string& name,
                                                      std::vector<std::string> options = {});

  // Starts the installed program and waits for its window. `environment` is on top of the
  // desktop's.
  void startProgram(const desktop::ChildProcess::Environment& environment = {});

  // A copy of the installed program, to spoil its files.
  std::filesystem::path copyInstallation();
  void startProgramAt(const std::filesystem::path& executable,
                      const desktop::ChildProcess::Environment& environment = {});

  // Waits until its window has the keyboard; assistive technology may not find it.
  void startProgramUnseen();

  // What is on the screen. Each waits for it, and fails the test when it does not come.
  desktop::Node button(const std::string& name);
  desktop::Node enabledButton(const std::string& name);
  desktop::Node cell(const std::string& text);
  desktop::Node labelWith(const std::string& text);
  desktop::Node progressBar();
  void waitForActive(const std::string& title);

  // For one that assistive technology does not find.
  void waitForKeyboard(const std::string& title);

  bool waitUntilGone(const std::string& role, const std::string& name);

  // At once, whether it is there now.
  bool isOnScreen(const std::string& role, const std::string& name);

  // The first column of the list from top to bottom.
  std::vector<std::string> printersInList();

  void click(const desktop::Node& node, int times = 1) { click(placeOf(node), times); }
  void click(const desktop::Node::Rectangle& place, int times = 1);

  // The program measures in its own units, each so many pixels wide.
  void setScale(int scale) { mScale = scale; }
  void press(const std::string& keys) { mDesktop.press(keys); }

  // Answers a sheet as a person does who reads it first, since it takes nothing before, and waits
  // until it is gone: by one of its buttons, or by keys.
  void answer(const std::string& name);
  void answerByKey(const std::string& keys, const std::string& name);

  // Clicks the row, Download and the same in the question, and waits for the download to begin.
  void startUpdate(const std::string& printer);
  void askForUpdate(const std::string& printer);

  void keepPicture(const std::string& name);

  // The program's log entries so far, without the identity before each.
  std::vector<std::string> log() const;
  bool waitForLog(const std::string& entry);

  // Asks the window for its name again and again until `condition` holds; how often it answered.
  int answersUntil(const std::function<bool()>& condition);
  std::size_t timesLogged(const std::string& entry) const;

  bool programRuns() { return !program().exitStatus(); }
  desktop::ChildProcess& program() { return *mProgram; }
  desktop::VirtualDesktop& desktop() { return mDesktop; }
  const desktop::Compositor& compositor() const { return *mCompositor; }
  const std::filesystem::path& output() const { return mOutput; }

 private:
  desktop::Node find(const std::string& what,
                     const std::function<bool(const desktop::Node&)>& condition);
  void answer(const std::string& name, const std::function<void()>& act);
  desktop::Node::Rectangle placeOf(const desktop::Node& node) const;
  void launch(const std::filesystem::path& executable,
              const desktop::ChildProcess::Environment& environment);

  std::filesystem::path mOutput;
  desktop::VirtualDesktop mDesktop;
  TemporaryDirectory mCopy;
  std::unique_ptr<desktop::Compositor> mCompositor;
  std::unique_ptr<desktop::ChildProcess> mProgram;
  int mScale = 1;
};

// Gives a copied installation another firmware file in the place of the one of that name.
void replaceFirmware(const std::filesystem::path& executable,
                     const std::filesystem::path& firmware);

// The SHA-256 that the printer has burned; empty when it has burned nothing.
std::string burnedSha256(const VirtualPrinterProcess& printer);
