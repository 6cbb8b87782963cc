#include "platform/headless/HeadlessToolkit.h"

#include <algorithm>

namespace platform {

OSStatus HeadlessToolkit::createNibReference(const Text&, NibRef& nib) {
  nib = static_cast<NibRef>(nextRef());
  return noErr;
}

void HeadlessToolkit::disposeNibReference(NibRef) {}

OSStatus HeadlessToolkit::setMenuBarFromNib(NibRef, const Text&) { return noErr; }

OSStatus HeadlessToolkit::createWindowFromNib(NibRef, const Text&, WindowRef& window) {
  window = static_cast<WindowRef>(nextRef());
  mWindows.insert(window);
  return noErr;
}

void HeadlessToolkit::disposeWindow(WindowRef window) {
  std::erase_if(mControls, [window](const auto& each) { return each.second.owner == window; });
  mWindows.erase(window);
}

void HeadlessToolkit::showWindow(WindowRef) {}

OSStatus HeadlessToolkit::showSheetWindow(WindowRef sheet, WindowRef) {
  return mWindows.contains(sheet) ? noErr : errInvalidWindowRef;
}

OSStatus HeadlessToolkit::hideSheetWindow(WindowRef sheet) {
  return mWindows.contains(sheet) ? noErr : errInvalidWindowRef;
}

OSStatus HeadlessToolkit::getControlById(WindowRef window, ControlId id, ControlRef& control) {
  control = ControlRef::None;
  if (!mWindows.contains(window)) return errInvalidWindowRef;
  const auto found = std::ranges::find_if(mControls, [&](const auto& each) {
    const Control& known = each.second;
    return known.owner == window && known.id.signature == id.signature && known.id.id == id.id;
  });
  if (found != mControls.end()) {
    control = found->first;
    return noErr;
  }
  control = static_cast<ControlRef>(nextRef());
  mControls[control] = {window, id, {}};
  return noErr;
}

WindowRef HeadlessToolkit::controlOwner(ControlRef control) {
  const auto found = mControls.find(control);
  return found == mControls.end() ? WindowRef::None : found->second.owner;
}

OSStatus HeadlessToolkit::setControlText(ControlRef control, const Text&) {
  return mControls.contains(control) ? noErr : errControlNotFound;
}

OSStatus HeadlessToolkit::setControlEnabled(ControlRef control, bool) {
  return mControls.contains(control) ? noErr : errControlNotFound;
}

OSStatus HeadlessToolkit::setControlProperty(ControlRef control, FourCharCode creator,
                                             FourCharCode tag, void* value) {
  const auto found = mControls.find(control);
  if (found == mControls.end()) return errControlNotFound;
  found->second.properties[{creator, tag}] = value;
  return noErr;
}

OSStatus HeadlessToolkit::getControlProperty(ControlRef control, FourCharCode creator,
                                             FourCharCode tag, void*& value) {
  value = nullptr;
  const auto found = mControls.find(control);
  if (found == mControls.end()) return errControlNotFound;
  const auto property = found->second.properties.find({creator, tag});
  if (property == found->second.properties.end()) return controlPropertyNotFoundErr;
  value = property->second;
  return noErr;
}

OSStatus HeadlessToolkit::dataBrowserChangeAttributes(ControlRef control, std::uint32_t,
                                                      std::uint32_t) {
  return mControls.contains(control) ? noErr : errControlNotFound;
}

OSStatus HeadlessToolkit::initDataBrowserCallbacks(DataBrowserCallbacks& callbacks) {
  callbacks = {};
  return noErr;
}

OSStatus HeadlessToolkit::setDataBrowserCallbacks(ControlRef control, const DataBrowserCallbacks&) {
  if (!mControls.contains(control)) return errControlNotFound;
  mList = control;
  return noErr;
}

// Rows have no order here: whoever shows them sorts them.
OSStatus HeadlessToolkit::setDataBrowserSortProperty(ControlRef control, FourCharCode) {
  return mControls.contains(control) ? noErr : errControlNotFound;
}

OSStatus HeadlessToolkit::addDataBrowserItem(ControlRef control, ItemId item) {
  if (control != mList) return errControlNotFound;
  if (item == 0 || !mItems.insert(item).second) return errDataBrowserItemNotAdded;
  mListener.rowAdded(item);
  return noErr;
}

OSStatus HeadlessToolkit::removeDataBrowserItem(ControlRef control, ItemId item) {
  if (control != mList) return errControlNotFound;
  if (mItems.erase(item) == 0) return errDataBrowserItemNotFound;
  mListener.rowRemoved(item);
  return noErr;
}

OSStatus HeadlessToolkit::getSelectionAnchor(ControlRef control, ItemId& first,
                                             ItemId& last) const {
  first = last = 0;
  return control == mList ? noErr : errControlNotFound;
}

OSStatus HeadlessToolkit::getNamedColumnWidth(ControlRef control, FourCharCode,
                                              std::uint16_t& width) {
  width = 0;
  return mControls.contains(control) ? noErr : errControlNotFound;
}

OSStatus HeadlessToolkit::setNamedColumnWidth(ControlRef control, FourCharCode, std::uint16_t) {
  return mControls.contains(control) ? noErr : errControlNotFound;
}

}  // namespace platform
