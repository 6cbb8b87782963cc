#include "FakeToolkit.h"

#include <algorithm>
#include <utility>

using namespace platform::literals;
using platform::ControlId;
using platform::ControlRef;
using platform::FourCharCode;
using platform::ItemId;
using platform::NibRef;
using platform::noErr;
using platform::OSStatus;
using platform::Text;
using platform::WindowRef;

namespace {

std::string words(const Text& text) { return text ? std::string(text.utf8()) : "<null>"; }

std::string words(FourCharCode code) {
  if (code == 0) return "0";
  std::string characters;
  for (int shift = 24; shift >= 0; shift -= 8) {
    characters.push_back(static_cast<char>(code >> shift & 0xFF));
  }
  return characters;
}

std::string words(ControlId id) { return words(id.signature) + "." + std::to_string(id.id); }

std::string words(const platform::DataBrowserCallbacks& callbacks) {
  std::string set;
  if (callbacks.itemData != nullptr) set += " itemData";
  if (callbacks.itemCompare != nullptr) set += " itemCompare";
  if (callbacks.itemNotification != nullptr) set += " itemNotification";
  return set.empty() ? "none" : set.substr(1);
}

}  // namespace

FakeToolkit::FakeToolkit(FakeScreen::EventSender sender) : mScreen(std::move(sender)) {
  defineNib(productNib());
}

void FakeToolkit::defineNib(const FakeNib& nib) { mKnownNibs[nib.name] = nib; }

std::string FakeToolkit::label(NibRef nib) const {
  if (nib == NibRef::None) return "none";
  const auto found = mNibs.find(nib);
  return found != mNibs.end() ? found->second.name : "gone";
}

std::string FakeToolkit::label(WindowRef window) const {
  if (window == WindowRef::None) return "none";
  const FakeScreen::Window* found = mScreen.find(window);
  return found != nullptr ? found->name : "gone";
}

std::string FakeToolkit::label(ControlRef control) const {
  if (control == ControlRef::None) return "none";
  const FakeScreen::Control* found = mScreen.find(control);
  return found != nullptr ? label(found->owner) + "/" + words(found->plan.id) : "gone";
}

// Nibs and windows.

OSStatus FakeToolkit::createNibReference(const Text& name, NibRef& nib) {
  nib = NibRef::None;
  if (const auto answer = mScript.record("createNibReference", {words(name)})) return *answer;
  const auto known = mKnownNibs.find(words(name));
  if (known == mKnownNibs.end()) return platform::kIBCarbonRuntimeCantFindNibFile;
  nib = NibRef{++mLastNib};
  mNibs[nib] = known->second;
  return noErr;
}

void FakeToolkit::disposeNibReference(NibRef nib) {
  if (mScript.record("disposeNibReference", {label(nib)})) return;
  mNibs.erase(nib);
}

OSStatus FakeToolkit::setMenuBarFromNib(NibRef nib, const Text& name) {
  if (const auto answer = mScript.record("setMenuBarFromNib", {label(nib), words(name)}))
    return *answer;
  const auto found = mNibs.find(nib);
  if (found == mNibs.end()) return platform::kIBCarbonRuntimeCantFindNibFile;
  if (found->second.menuBar != words(name)) return platform::kIBCarbonRuntimeCantFindObject;
  mScreen.setMenuCommands(found->second.menuCommands);
  return noErr;
}

OSStatus FakeToolkit::createWindowFromNib(NibRef nib, const Text& name, WindowRef& window) {
  window = WindowRef::None;
  if (const auto answer = mScript.record("createWindowFromNib", {label(nib), words(name)}))
    return *answer;
  const auto found = mNibs.find(nib);
  if (found == mNibs.end()) return platform::kIBCarbonRuntimeCantFindNibFile;
  const auto& plans = found->second.windows;
  const auto plan = std::ranges::find(plans, words(name), &FakeWindowPlan::name);
  if (plan == plans.end()) return platform::kIBCarbonRuntimeCantFindObject;

  window = mScreen.addWindow(*plan);
  const auto question = std::ranges::find(plans, plan->quitQuestion, &FakeWindowPlan::name);
  if (question != plans.end()) mScreen.find(window)->quitQuestion = mScreen.addWindow(*question);
  return noErr;
}

void FakeToolkit::disposeWindow(WindowRef window) {
  if (mScript.record("disposeWindow", {label(window)})) return;
  mScreen.removeWindow(window);
}

void FakeToolkit::showWindow(WindowRef window) {
  if (mScript.record("showWindow", {label(window)})) return;
  if (FakeScreen::Window* found = mScreen.find(window)) found->shown = true;
}

OSStatus FakeToolkit::showSheetWindow(WindowRef sheet, WindowRef parent) {
  if (const auto answer = mScript.record("showSheetWindow", {label(sheet), label(parent)})) {
    return *answer;
  }
  return mScreen.attach(sheet, parent) ? noErr : platform::errInvalidWindowRef;
}

OSStatus FakeToolkit::hideSheetWindow(WindowRef sheet) {
  if (const auto answer = mScript.record("hideSheetWindow", {label(sheet)})) return *answer;
  return mScreen.detach(sheet) ? noErr : platform::errInvalidWindowRef;
}

// Controls.

OSStatus FakeToolkit::getControlById(WindowRef window, ControlId id, ControlRef& control) {
  control = ControlRef::None;
  if (const auto answer = mScript.record("getControlById", {label(window), words(id)})) {
    return *answer;
  }
  if (mScreen.find(window) == nullptr) return platform::errInvalidWindowRef;
  const ControlRef found = mScreen.controlIn(window, id);
  if (found == ControlRef::None) return platform::errControlNotFound;
  control = found;
  return noErr;
}

WindowRef FakeToolkit::controlOwner(ControlRef control) {
  if (mScript.record("controlOwner", {label(control)})) return WindowRef::None;
  const FakeScreen::Control* found = mScreen.find(control);
  return found != nullptr ? found->owner : WindowRef::None;
}

template <typename Act>
OSStatus FakeToolkit::onControl(const char* call, ControlRef control,
                                std::vector<std::string> arguments, Act act) {
  arguments.insert(arguments.begin(), label(control));
  if (const auto answer = mScript.record(call, arguments)) return *answer;
  FakeScreen::Control* found = mScreen.find(control);
  return found != nullptr ? act(*found) : platform::errControlNotFound;
}

template <typename Act>
OSStatus FakeToolkit::onList(const char* call, ControlRef control,
                             std::vector<std::string> arguments, Act act) {
  return onControl(call, control, std::move(arguments), [&](FakeScreen::Control& found) {
    const bool isList = found.plan.kind == FakeControlPlan::Kind::List;
    return isList ? act(found.list) : platform::errControlNotFound;
  });
}

OSStatus FakeToolkit::setControlText(ControlRef control, const Text& text) {
  return onControl("setControlText", control, {words(text)}, [&](FakeScreen::Control& found) {
    found.text = text;
    return noErr;
  });
}

OSStatus FakeToolkit::setControlEnabled(ControlRef control, bool enabled) {
  const std::string state = enabled ? "enabled" : "disabled";
  return onControl("setControlEnabled", control, {state}, [&](FakeScreen::Control& found) {
    found.enabled = enabled;
    return noErr;
  });
}

OSStatus FakeToolkit::setControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                                         void* value) {
  return onControl("setControlProperty", control, {words(creator), words(tag)},
                   [&](FakeScreen::Control& found) {
                     found.properties[{creator, tag}] = value;
                     return noErr;
                   });
}

OSStatus FakeToolkit::getControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                                         void*& value) {
  return onControl("getControlProperty", control, {words(creator), words(tag)},
                   [&](FakeScreen::Control& found) {
                     const auto property = found.properties.find({creator, tag});
                     if (property == found.properties.end())
                       return platform::controlPropertyNotFoundErr;
                     value = property->second;
                     return noErr;
                   });
}

// The list control.

OSStatus FakeToolkit::dataBrowserChangeAttributes(ControlRef control, std::uint32_t set,
                                                  std::uint32_t clear) {
  return onList("dataBrowserChangeAttributes", control,
                {std::to_string(set), std::to_string(clear)}, [&](FakeListControl& list) {
                  list.attributes = (list.attributes & ~clear) | set;
                  return noErr;
                });
}

OSStatus FakeToolkit::initDataBrowserCallbacks(platform::DataBrowserCallbacks& callbacks) {
  if (const auto answer = mScript.record("initDataBrowserCallbacks", {})) return *answer;
  callbacks = {};
  return noErr;
}

OSStatus FakeToolkit::setDataBrowserCallbacks(ControlRef control,
                                              const platform::DataBrowserCallbacks& callbacks) {
  return onList("setDataBrowserCallbacks", control, {words(callbacks)}, [&](FakeListControl& list) {
    list.callbacks = callbacks;
    return noErr;
  });
}

OSStatus FakeToolkit::setDataBrowserSortProperty(ControlRef control, FourCharCode property) {
  return onList("setDataBrowserSortProperty", control, {words(property)},
                [&](FakeListControl& list) {
                  if (!list.columns.contains(property))
                    return platform::errDataBrowserPropertyNotFound;
                  list.sortProperty = property;
                  return noErr;
                });
}

OSStatus FakeToolkit::addDataBrowserItem(ControlRef control, ItemId item) {
  return onList("addDataBrowserItem", control, {std::to_string(item)}, [&](FakeListControl& list) {
    if (item == 0 || list.contains(item)) return platform::errDataBrowserItemNotAdded;
    list.add(item);
    return noErr;
  });
}

OSStatus FakeToolkit::removeDataBrowserItem(ControlRef control, ItemId item) {
  return onList("removeDataBrowserItem", control, {std::to_string(item)},
                [&](FakeListControl& list) {
                  if (!list.contains(item)) return platform::errDataBrowserItemNotFound;
                  list.remove(item);
                  return noErr;
                });
}

OSStatus FakeToolkit::getSelectionAnchor(ControlRef control, ItemId& first, ItemId& last) const {
  first = last = 0;
  if (const auto answer = mScript.record("getSelectionAnchor", {label(control)})) return *answer;
  const FakeScreen::Control* found = mScreen.find(control);
  if (found == nullptr || found->plan.kind != FakeControlPlan::Kind::List)
    return platform::errControlNotFound;
  first = last = found->list.selected();
  return noErr;
}

OSStatus FakeToolkit::getNamedColumnWidth(ControlRef control, FourCharCode property,
                                          std::uint16_t& width) {
  return onList("getNamedColumnWidth", control, {words(property)}, [&](FakeListControl& list) {
    const auto column = list.columns.find(property);
    if (column == list.columns.end()) return platform::errDataBrowserPropertyNotFound;
    width = column->second;
    return noErr;
  });
}

OSStatus FakeToolkit::setNamedColumnWidth(ControlRef control, FourCharCode property,
                                          std::uint16_t width) {
  return onList("setNamedColumnWidth", control, {words(property), std::to_string(width)},
                [&](FakeListControl& list) {
                  const auto column = list.columns.find(property);
                  if (column == list.columns.end()) return platform::errDataBrowserPropertyNotFound;
                  column->second = width;
                  return noErr;
                });
}
