#include "platform/qt/ControlTable.h"

#include "platform/qt/ListControl.h"

namespace platform {

ControlRef ControlTable::refFor(QWidget& widget, WindowRef owner) {
  for (const auto& [ref, control] : mControls) {
    if (control.widget == &widget) return ref;
  }
  const auto ref = static_cast<ControlRef>(++mLastRef);
  mControls[ref] = {&widget, owner, {}};
  return ref;
}

const ControlTable::Control* ControlTable::find(ControlRef control) const {
  const auto found = mControls.find(control);
  return found == mControls.end() || found->second.widget == nullptr ? nullptr : &found->second;
}

QWidget* ControlTable::widget(ControlRef control) const {
  const Control* found = find(control);
  return found == nullptr ? nullptr : found->widget.data();
}

ListControl* ControlTable::list(ControlRef control) const {
  return dynamic_cast<ListControl*>(widget(control));
}

WindowRef ControlTable::owner(ControlRef control) const {
  const Control* found = find(control);
  return found == nullptr ? WindowRef::None : found->owner;
}

std::vector<ControlRef> ControlTable::ownedBy(WindowRef owner) const {
  std::vector<ControlRef> refs;
  for (const auto& [ref, control] : mControls) {
    if (control.owner == owner) refs.push_back(ref);
  }
  return refs;
}

OSStatus ControlTable::setProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                                   void* value) {
  if (find(control) == nullptr) return errControlNotFound;
  mControls[control].properties[{creator, tag}] = value;
  return noErr;
}

OSStatus ControlTable::getProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                                   void*& value) const {
  const Control* found = find(control);
  if (found == nullptr) return errControlNotFound;
  const auto held = found->properties.find({creator, tag});
  if (held == found->properties.end()) return controlPropertyNotFoundErr;
  value = held->second;
  return noErr;
}

}  // namespace platform
