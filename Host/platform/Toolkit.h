// Windows, sheets, controls and the list control, by the names and codes that the interface files
// give them. What can fail returns a status; nothing throws.
#pragma once

#include <cstdint>

#include "platform/FourCharCode.h"
#include "platform/Handles.h"
#include "platform/Status.h"
#include "platform/Text.h"

namespace platform {

struct ControlId {
  FourCharCode signature = 0;
  std::int32_t id = 0;
};

// A row of the list control; 0 is no row.
using ItemId = std::uint32_t;

// Receives the text of one cell.
class ItemData {
 public:
  virtual ~ItemData() = default;
  virtual OSStatus setText(const Text& text) = 0;  // a null text leaves the cell empty
};

// Null members are not called. The compare callback says whether `a` sorts before `b`. It and the
// data callback must not throw: they are asked while the list is drawn.
struct DataBrowserCallbacks {
  OSStatus (*itemData)(ControlRef control, ItemId item, FourCharCode property, ItemData& data,
                       bool setValue) = nullptr;
  bool (*itemCompare)(ControlRef control, ItemId a, ItemId b, FourCharCode property) = nullptr;
  void (*itemNotification)(ControlRef control, ItemId item, std::uint32_t message) = nullptr;
};

inline constexpr std::uint32_t kDataBrowserSelectionSetChanged = 14;
inline constexpr std::uint32_t kDataBrowserListViewAlternatingRowColors = 2;

class Toolkit {
 public:
  virtual ~Toolkit() = default;

  virtual OSStatus createNibReference(const Text& name, NibRef& nib) = 0;
  virtual void disposeNibReference(NibRef nib) = 0;
  virtual OSStatus setMenuBarFromNib(NibRef nib, const Text& name) = 0;

  // A window is created hidden. Closing the main window by its frame or keys sends
  // kWindowCloseEvent.
  virtual OSStatus createWindowFromNib(NibRef nib, const Text& name, WindowRef& window) = 0;
  virtual void disposeWindow(WindowRef window) = 0;
  virtual void showWindow(WindowRef window) = 0;

  // A sheet blocks its parent, and everything that the parent blocks, until it is hidden: no
  // command is issued from there by any means but 'quit', and the main window can be closed. An
  // interface file may name a question for its sheet that is asked before either; the program gets
  // the command 'quit' when the user stays with it, and nothing otherwise.
  virtual OSStatus showSheetWindow(WindowRef sheet, WindowRef parent) = 0;
  virtual OSStatus hideSheetWindow(WindowRef sheet) = 0;

  virtual OSStatus getControlById(WindowRef window, ControlId id, ControlRef& control) = 0;
  virtual WindowRef controlOwner(ControlRef control) = 0;
  // On one line and without any markup, whatever `text` holds; what is not to be seen of it, or
  // would move the rest, shows as U+FFFD. A null text shows nothing.
  virtual OSStatus setControlText(ControlRef control, const Text& text) = 0;
  virtual OSStatus setControlEnabled(ControlRef control, bool enabled) = 0;

  // A value that rides on a control; 0 is returned as any other value.
  virtual OSStatus setControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                                      void* value) = 0;
  virtual OSStatus getControlProperty(ControlRef control, FourCharCode creator, FourCharCode tag,
                                      void*& value) = 0;

  // The list control. Its bounds changes send kControlBoundsChangedEvent with the bounds before and
  // after; its end sends kControlDisposedEvent. See Events.h.
  virtual OSStatus dataBrowserChangeAttributes(ControlRef control, std::uint32_t set,
                                               std::uint32_t clear) = 0;
  virtual OSStatus initDataBrowserCallbacks(DataBrowserCallbacks& callbacks) = 0;
  virtual OSStatus setDataBrowserCallbacks(ControlRef control,
                                           const DataBrowserCallbacks& callbacks) = 0;
  virtual OSStatus setDataBrowserSortProperty(ControlRef control, FourCharCode property) = 0;
  virtual OSStatus addDataBrowserItem(ControlRef control, ItemId item) = 0;
  virtual OSStatus removeDataBrowserItem(ControlRef control, ItemId item) = 0;
  virtual OSStatus getSelectionAnchor(ControlRef control, ItemId& first, ItemId& last) const = 0;
  virtual OSStatus getNamedColumnWidth(ControlRef control, FourCharCode property,
                                       std::uint16_t& width) = 0;
  virtual OSStatus setNamedColumnWidth(ControlRef control, FourCharCode property,
                                       std::uint16_t width) = 0;
};

}  // namespace platform
