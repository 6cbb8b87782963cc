#include "ToolkitContract.h"

#include "FakeEvents.h"

using namespace platform::literals;
using platform::ControlRef;
using platform::FloatRect;
using platform::ItemId;
using platform::noErr;
using platform::OSStatus;
using platform::Text;
using platform::WindowRef;

ToolkitContract* ToolkitContract::sCurrent = nullptr;

ToolkitContract::ToolkitContract() {
  sCurrent = this;
  EXPECT_EQ(toolkit().createNibReference(Text::fromUtf8("main"), mNib), noErr);
  mMain = create("PrinterSelectWindow");
  EXPECT_EQ(toolkit().setMenuBarFromNib(mNib, Text::fromUtf8("MenuBar")), noErr);
  install(platform::kApplicationTarget, {{"cmds"_4cc, 1}});
  install(mMain, {{"wind"_4cc, 72}});
}

ToolkitContract::~ToolkitContract() {
  mWorld.reset();
  sCurrent = nullptr;
}

WindowRef ToolkitContract::create(const char* window) {
  WindowRef created = WindowRef::None;
  EXPECT_EQ(toolkit().createWindowFromNib(mNib, Text::fromUtf8(window), created), noErr);
  EXPECT_NE(created, WindowRef::None);
  return created;
}

ControlRef ToolkitContract::control(WindowRef window, platform::ControlId id) {
  ControlRef found = ControlRef::None;
  EXPECT_EQ(toolkit().getControlById(window, id, found), noErr);
  return found;
}

void ToolkitContract::install(const platform::EventTarget& target,
                              std::vector<platform::EventSpec> specs) {
  platform::EventHandlerRef installed = 0;
  EXPECT_EQ(mWorld->events().installHandler(target, specs, told, this, installed), noErr);
}

ControlRef ToolkitContract::setUpList() {
  mList = control(mMain, {"lPrn"_4cc, 0});
  install(mList, {{"cntl"_4cc, 154}, {"cntl"_4cc, 1001}});
  platform::DataBrowserCallbacks callbacks;
  EXPECT_EQ(toolkit().initDataBrowserCallbacks(callbacks), noErr);
  callbacks.itemData = itemData;
  callbacks.itemCompare = itemCompare;
  callbacks.itemNotification = itemNotification;
  EXPECT_EQ(toolkit().setDataBrowserCallbacks(mList, callbacks), noErr);
  EXPECT_EQ(toolkit().setDataBrowserSortProperty(mList, "lcNm"_4cc), noErr);
  return mList;
}

void ToolkitContract::addRow(ItemId item, const char* name, const char* info) {
  mNames[item] = name;
  mInfos[item] = info;
  EXPECT_EQ(toolkit().addDataBrowserItem(mList, item), noErr);
}

ItemId ToolkitContract::selected() {
  ItemId first = 0;
  ItemId last = 0;
  EXPECT_EQ(toolkit().getSelectionAnchor(mList, first, last), noErr);
  EXPECT_EQ(first, last);
  return first;
}

OSStatus ToolkitContract::told(platform::EventHandlerCallRef, const platform::Event& event,
                               void* userData) {
  auto& test = *static_cast<ToolkitContract*>(userData);
  if (event.eventClass() == "cmds"_4cc) {
    platform::HICommand command;
    EXPECT_EQ(event.getParameter("----"_4cc, command), noErr);
    test.mTold.push_back("command " + fourCharText(command.commandId));
    return noErr;
  }
  if (event.eventClass() == "wind"_4cc) {
    test.mTold.emplace_back("close");
    return test.mCloseAnswer;
  }
  ControlRef control = ControlRef::None;
  event.getParameter("----"_4cc, control);
  if (event.kind() == 1001) {
    test.mTold.emplace_back("disposed");
    return noErr;
  }
  FloatRect before;
  FloatRect after;
  EXPECT_EQ(control, test.mList);
  EXPECT_EQ(event.getParameter("orct"_4cc, before), noErr);
  EXPECT_EQ(event.getParameter("crct"_4cc, after), noErr);
  const int change = static_cast<int>(after.width - before.width);
  if (change != 0) test.mTold.push_back("resized " + std::to_string(change));
  return noErr;
}

Text ToolkitContract::textOf(ItemId item, platform::FourCharCode property) const {
  if (property == "lcNm"_4cc) {
    return Text::fromUtf8(std::string(mNames.at(item)) + "#" + std::to_string(item));
  }
  const char* info = mInfos.at(item);
  return info == nullptr ? Text() : Text::fromUtf8(info);
}

OSStatus ToolkitContract::itemData(ControlRef control, ItemId item, platform::FourCharCode property,
                                   platform::ItemData& data, bool setValue) {
  EXPECT_EQ(control, sCurrent->mList);
  EXPECT_FALSE(setValue);
  return data.setText(sCurrent->textOf(item, property));
}

bool ToolkitContract::itemCompare(ControlRef control, ItemId a, ItemId b,
                                  platform::FourCharCode property) {
  EXPECT_EQ(control, sCurrent->mList);
  const Text textA = sCurrent->textOf(a, property);
  const Text textB = sCurrent->textOf(b, property);
  return textA && textB && platform::compare(textA, textB, platform::Comparison::Numeric) < 0;
}

void ToolkitContract::itemNotification(ControlRef control, ItemId, std::uint32_t message) {
  EXPECT_EQ(control, sCurrent->mList);
  if (message != platform::kDataBrowserSelectionSetChanged) return;
  sCurrent->mTold.push_back("selection " + std::to_string(sCurrent->selected()));
}
