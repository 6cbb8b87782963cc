// Brings the printers on USB to the printer list view, and takes them away again. The application
// owns it, creates it after the view and destroys it before.
#pragma once

#include "QuillUsbDeviceFinderAsync.h"

class PrinterListView;

class UsbDeviceFinder : public QuillUsbDeviceFinderAsync {
 public:
  // Finds printers of the supported model. `view` must outlive the finder.
  explicit UsbDeviceFinder(PrinterListView& view);

  void notifyDeviceFound(QuillUsbDevice& device) override;
  void notifyDeviceRemoved(QuillUsbDevice& device) override;

 private:
  PrinterListView& mView;
};
