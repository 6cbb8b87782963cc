// The main window, the sheets and the list of every toolkit, and what they tell the program. A test
// of the contract of toolkits derives from this.
#pragma once

#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ToolkitWorld.h"

inline void PrintTo(const ToolkitImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

inline std::vector<ToolkitImplementation> toolkitImplementations() {
  return {{"Fake", makeFakeToolkitWorld}, {"Qt", makeQtToolkitWorld}};
}

inline std::string nameOf(const testing::TestParamInfo<ToolkitImplementation>& info) {
  return info.param.name;
}

class ToolkitContract : public testing::TestWithParam<ToolkitImplementation> {
 protected:
  ToolkitContract();
  ~ToolkitContract() override;

  platform::Toolkit& toolkit() { return mWorld->toolkit(); }
  platform::WindowRef create(const char* window);
  platform::ControlRef control(platform::WindowRef window, platform::ControlId id);

  // The list with callbacks that serve `mNames` and `mInfos`, sorted by name.
  platform::ControlRef setUpList();
  void addRow(platform::ItemId item, const char* name, const char* info = "");
  platform::ItemId selected();

  std::vector<std::string> takeTold() { return std::exchange(mTold, {}); }

  std::unique_ptr<ToolkitWorld> mWorld = GetParam().make();
  platform::NibRef mNib = platform::NibRef::None;
  platform::WindowRef mMain = platform::WindowRef::None;
  platform::ControlRef mList = platform::ControlRef::None;

  // In words: "command Down", "close", "selection 2", "resized 30", "disposed".
  std::vector<std::string> mTold;

  // A null info is a printer without an address.
  std::map<platform::ItemId, const char*> mNames;
  std::map<platform::ItemId, const char*> mInfos;
  platform::OSStatus mCloseAnswer = platform::eventNotHandledErr;

 private:
  static platform::OSStatus told(platform::EventHandlerCallRef call, const platform::Event& event,
                                 void* userData);
  static platform::OSStatus itemData(platform::ControlRef control, platform::ItemId item,
                                     platform::FourCharCode property, platform::ItemData& data,
                                     bool setValue);
  static bool itemCompare(platform::ControlRef control, platform::ItemId a, platform::ItemId b,
                          platform::FourCharCode property);
  static void itemNotification(platform::ControlRef control, platform::ItemId item,
                               std::uint32_t message);

  platform::Text textOf(platform::ItemId item, platform::FourCharCode property) const;
  void install(const platform::EventTarget& target, std::vector<platform::EventSpec> specs);

  static ToolkitContract* sCurrent;  // for the list's callbacks
};
