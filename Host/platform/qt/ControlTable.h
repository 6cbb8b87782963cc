// The controls that the program has asked for: their references, owners and the values that ride on
// them. A widget keeps its reference for its life; no reference is used twice. Used by the toolkit.
#pragma once

#include <QPointer>
#include <QWidget>
#include <map>
#include <utility>
#include <vector>

#include "platform/Handles.h"
#include "platform/Toolkit.h"

namespace platform {

class ListControl;

class ControlTable {
 public:
  ControlRef refFor(QWidget& widget, WindowRef owner);

  // Null, or None, for a reference whose control is gone.
  QWidget* widget(ControlRef control) const;
  ListControl* list(ControlRef control) const;
  WindowRef owner(ControlRef control) const;

  std::vector<ControlRef> ownedBy(WindowRef owner) const;
  void forget(ControlRef control) { mControls.erase(control); }

  OSStatus setProperty(ControlRef control, FourCharCode creator, FourCharCode tag, void* value);
  OSStatus getProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                       void*& value) const;

 private:
  struct Control {
    QPointer<QWidget> widget;
    WindowRef owner;
    std::map<std::pair<FourCharCode, FourCharCode>, void*> properties;
  };

  const Control* find(ControlRef control) const;

  std::map<ControlRef, Control> mControls;
  std::uint64_t mLastRef = 0;
};

}  // namespace platform
