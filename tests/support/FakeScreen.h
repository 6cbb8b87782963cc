// What the toolkit double has on its screen: windows, sheets, controls and the menu bar, modelled
// just far enough that a test can do what a user does and look at what a user sees. The FakeToolkit
// owns it and fills it.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FakeListControl.h"
#include "FakeNib.h"
#include "platform/Events.h"
#include "platform/Toolkit.h"

class FakeScreen {
 public:
  // Takes an event to the handlers on its target, and returns their answer. Commands go to the
  // installed platform's events.
  using EventSender =
      std::function<platform::OSStatus(const platform::EventTarget&, const platform::Event&)>;

  explicit FakeScreen(EventSender sender) : mSendEvent(std::move(sender)) {}

  // What a user does. False when it cannot be done: the window is not there, hidden or blocked by a
  // sheet, the control is disabled, the row is not in the list. Quit can always be chosen, and the
  // main window closed, but a question may come of it.
  bool press(const std::string& window, platform::ControlId button);
  bool chooseMenuItem(platform::FourCharCode command);
  bool select(const std::string& window, platform::ControlId list, platform::ItemId item);
  bool closeWindow(const std::string& window);
  // Sends the notice of changed bounds, and returns its handlers' answer.
  platform::OSStatus resize(platform::ControlRef list, platform::FloatRect from,
                            platform::FloatRect to);

  // What a user sees. A text that is not there, or null, is none.
  bool exists(const std::string& window) const;
  bool isVisible(const std::string& window) const;
  bool isBlocked(const std::string& window) const;
  std::optional<std::string> text(const std::string& window, platform::ControlId control) const;
  bool isEnabled(const std::string& window, platform::ControlId control) const;

  // None, and null, when there is no such control.
  platform::ControlRef control(const std::string& window, platform::ControlId id) const;
  FakeListControl* list(const std::string& window, platform::ControlId id);

  // For the toolkit.
  struct Window {
    std::string name;
    bool isSheet = false;
    bool shown = false;                                      // of a window that is no sheet
    platform::WindowRef parent = platform::WindowRef::None;  // of a sheet that is up
    platform::WindowRef quitQuestion = platform::WindowRef::None;
  };

  struct Control {
    explicit Control(platform::ControlRef self) : list(self) {}

    FakeControlPlan plan;
    platform::WindowRef owner = platform::WindowRef::None;
    platform::Text text;
    bool enabled = true;
    std::map<std::pair<platform::FourCharCode, platform::FourCharCode>, void*> properties;
    FakeListControl list;
  };

  // None, and null, for what is not there.
  platform::WindowRef window(const std::string& name) const;
  Window* find(platform::WindowRef window);
  Control* find(platform::ControlRef control);
  platform::ControlRef controlIn(platform::WindowRef window, platform::ControlId id) const;

  // Both refuse, and change nothing, when a window is not there; attaching also when the sheet is
  // none, is up elsewhere, or would block itself.
  bool attach(platform::WindowRef sheet, platform::WindowRef parent);
  bool detach(platform::WindowRef sheet);

  platform::WindowRef addWindow(const FakeWindowPlan& plan);
  void removeWindow(platform::WindowRef window);
  void setMenuCommands(const std::vector<platform::FourCharCode>& commands);

 private:
  const Control* find(const std::string& window, platform::ControlId id) const;
  // A sheet is on the screen together with its parent.
  bool isOnScreen(platform::WindowRef window) const;
  bool isBlocked(platform::WindowRef window) const;
  bool takesInput(const std::string& window) const;

  // True when Quit is asked about first.
  bool asksBeforeQuit();
  bool isQuitQuestion(platform::WindowRef window) const;
  void withdrawQuitQuestion(platform::WindowRef sheet);

  EventSender mSendEvent;
  std::uint64_t mLastRef = 0;
  std::map<platform::WindowRef, Window> mWindows;
  std::map<platform::ControlRef, Control> mControls;
  std::vector<platform::FourCharCode> mMenuCommands;
};
