// What an interface file holds, for the toolkit double: windows with the controls that code can
// find, and the commands of the menu bar.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/FourCharCode.h"
#include "platform/Toolkit.h"

struct FakeControlPlan {
  enum class Kind { StaticText, Button, List };

  Kind kind = Kind::StaticText;
  platform::ControlId id;
  platform::FourCharCode command = 0;                       // of a button
  bool enabled = true;                                      // at first
  std::map<platform::FourCharCode, std::uint16_t> columns;  // of a list, with their widths
};

struct FakeWindowPlan {
  std::string name;
  bool isSheet = false;
  std::vector<FakeControlPlan> controls;
  std::string quitQuestion{};  // the sheet that asks before Quit while this one is on top
};

struct FakeNib {
  std::string name;
  std::vector<FakeWindowPlan> windows;
  std::string menuBar;
  std::vector<platform::FourCharCode> menuCommands;
};

// The names and codes of the product's own interface file. Buttons that the product does not look
// up have the signature 'btn ' and the ID 1; in the confirmation, Yes is 1 and No is 2, and in the
// question before Quit, Quit is 1 and to keep on is 2.
FakeNib productNib();
