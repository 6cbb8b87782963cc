// Binds the list control of the main window to the printer list: both finders add and remove
// printers here, the control asks here for its cells and their order, and the command handler gets
// the selected printer from here. It owns the list. The control knows a printer by its item ID,
// which is its index in the list + 1.
#pragma once

#include <cstddef>
#include <cstdint>

#include "PrinterList.h"
#include "platform/Events.h"
#include "platform/Toolkit.h"

class PrinterListView {
 public:
  // Throws std::runtime_error when `window` has no list control or the control cannot be set up.
  explicit PrinterListView(platform::WindowRef window);

  // The control may live longer: it is left without handlers and callbacks.
  ~PrinterListView();
  PrinterListView(const PrinterListView&) = delete;
  PrinterListView& operator=(const PrinterListView&) = delete;

  void addUsbPrinter(QuillUsbDevice& device);
  void addBonjourPrinter(const platform::Text& name, const platform::Data& address);

  // A printer that is not in the list is logged for USB. Services that were never added are removed
  // routinely, so the network side ignores it.
  void removeUsbPrinter(QuillUsbDevice& device);
  void removeBonjourPrinter(platform::NetService* service);

  // The record of a row that the control was given, also once it is gone; std::out_of_range for any
  // other.
  const Printer& printer(platform::ItemId item) const;

  // Never null; std::out_of_range when no row is selected.
  Printer* getSelected() const;

  // 0 when no row is selected.
  platform::ItemId getListSelection() const;

  // Takes the callbacks from the control, so that none runs after the list is gone.
  void terminate();

 private:
  explicit PrinterListView(platform::ControlRef control);

  void attachToControl();
  void handleAddPrinter();
  void handleRemovePrinter(std::size_t index);

  static platform::OSStatus resizeEventHandler(platform::EventHandlerCallRef call,
                                               const platform::Event& event, void* userData);
  static platform::OSStatus disposeEventHandler(platform::EventHandlerCallRef call,
                                                const platform::Event& event, void* userData);

  static platform::OSStatus itemDataCallback(platform::ControlRef control, platform::ItemId item,
                                             platform::FourCharCode property,
                                             platform::ItemData& data, bool setValue);
  static bool itemCompareCallback(platform::ControlRef control, platform::ItemId a,
                                  platform::ItemId b, platform::FourCharCode property);
  static void itemNotificationCallback(platform::ControlRef control, platform::ItemId item,
                                       std::uint32_t message);

  platform::ControlRef mControl;
  PrinterList mPrinters;
  platform::EventHandlerRef mResizeHandler = 0;
  platform::EventHandlerRef mDisposeHandler = 0;
};
