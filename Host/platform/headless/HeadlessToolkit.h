// The windows of a program that has no screen. The product opens them and fills its list as ever;
// whoever drives the program is told of the rows. Windows and controls are there under whatever
// name or ID they are asked for; what is set on them is kept only where it is asked for again.
// Nobody selects a row or presses a button here.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <utility>

#include "platform/Toolkit.h"

namespace platform {

class HeadlessToolkit final : public Toolkit {
 public:
  // Told from inside the product's call; it must not issue commands.
  class Listener {
   public:
    virtual ~Listener() = default;
    virtual void rowAdded(ItemId item) = 0;
    virtual void rowRemoved(ItemId item) = 0;
  };

  // `listener` must outlive the toolkit.
  explicit HeadlessToolkit(Listener& listener) : mListener(listener) {}

  OSStatus createNibReference(const Text& name, NibRef& nib) override;
  void disposeNibReference(NibRef nib) override;
  OSStatus setMenuBarFromNib(NibRef nib, const Text& name) override;
  OSStatus createWindowFromNib(NibRef nib, const Text& name, WindowRef& window) override;
  void disposeWindow(WindowRef window) override;
  void showWindow(WindowRef window) override;
  OSStatus showSheetWindow(WindowRef sheet, WindowRef parent) override;
  OSStatus hideSheetWindow(WindowRef sheet) override;
  OSStatus getControlById(WindowRef window, ControlId id, ControlRef& control) override;
  WindowRef controlOwner(ControlRef control) override;
  OSStatus setControlText(ControlRef control, const Text& text) override;
  OSStatus setControlEnabled(ControlRef control, bool enabled) override;
  OSStatus setControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                              void* value) override;
  OSStatus getControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                              void*& value) override;
  OSStatus dataBrowserChangeAttributes(ControlRef control, std::uint32_t set,
                                       std::uint32_t clear) override;
  OSStatus initDataBrowserCallbacks(DataBrowserCallbacks& callbacks) override;
  OSStatus setDataBrowserCallbacks(ControlRef control,
                                   const DataBrowserCallbacks& callbacks) override;
  OSStatus setDataBrowserSortProperty(ControlRef control, FourCharCode property) override;
  OSStatus addDataBrowserItem(ControlRef control, ItemId item) override;
  OSStatus removeDataBrowserItem(ControlRef control, ItemId item) override;
  OSStatus getSelectionAnchor(ControlRef control, ItemId& first, ItemId& last) const override;
  OSStatus getNamedColumnWidth(ControlRef control, FourCharCode property,
                               std::uint16_t& width) override;
  OSStatus setNamedColumnWidth(ControlRef control, FourCharCode property,
                               std::uint16_t width) override;

 private:
  struct Control {
    WindowRef owner;
    ControlId id;
    std::map<std::pair<FourCharCode, FourCharCode>, void*> properties;
  };

  std::uint64_t nextRef() { return ++mLastRef; }

  Listener& mListener;
  std::uint64_t mLastRef = 0;
  std::set<WindowRef> mWindows;
  std::map<ControlRef, Control> mControls;
  ControlRef mList = ControlRef::None;  // the control that was given callbacks
  std::set<ItemId> mItems;
};

}  // namespace platform
