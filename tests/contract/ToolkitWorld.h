// A toolkit with the program's interface file, and a user in front of it, for tests that hold for
// every implementation: Qt's and the double. Windows go by their names in the interface file.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Events.h"
#include "platform/Toolkit.h"

inline constexpr const char* kMainWindow = "PrinterSelectWindow";

class ToolkitWorld {
 public:
  virtual ~ToolkitWorld() = default;

  virtual platform::Toolkit& toolkit() = 0;
  virtual platform::Events& events() = 0;

  // What a user tries, where it is possible or not.
  virtual void press(const std::string& window, platform::FourCharCode command) = 0;
  virtual void chooseMenuItem(platform::FourCharCode command) = 0;
  virtual void select(platform::ItemId item) = 0;  // in the main window; 0 for none
  virtual void closeWindow(const std::string& window) = 0;
  virtual void widenList(int by) = 0;

  // What a user sees.
  virtual bool isVisible(const std::string& window) = 0;
  virtual bool isEnabled(const std::string& window, platform::FourCharCode command) = 0;
  virtual std::optional<std::string> text(const std::string& window, platform::ControlId id) = 0;
  virtual std::vector<platform::ItemId> rows() = 0;
};

struct ToolkitImplementation {
  std::string name;
  std::unique_ptr<ToolkitWorld> (*make)();
};

std::unique_ptr<ToolkitWorld> makeFakeToolkitWorld();
std::unique_ptr<ToolkitWorld> makeQtToolkitWorld();
