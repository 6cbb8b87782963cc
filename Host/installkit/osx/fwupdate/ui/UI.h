// The application: the window, its sheets and its list, the event handling and both finders, all
// owned here for the whole run. main() makes the one UI; the download controller is main's.
#pragma once

#include "BonjourDeviceFinder.h"
#include "CarbonEventHandler.h"
#include "ConfirmationSheet.h"
#include "NibWrapper.h"
#include "PrinterListView.h"
#include "ProgressSheet.h"
#include "UsbDeviceFinder.h"
#include "WindowWrapper.h"

class UI {
 public:
  // Throws std::runtime_error when a part of the interface is missing.
  explicit UI(FirmwareDownloader& downloader);
  UI(const UI&) = delete;
  UI& operator=(const UI&) = delete;

  // Installs the handlers, starts both finders and returns when the application quits.
  void run();

 private:
  // In the order of construction. The finders come last, so that they are the first to go and no
  // notification reaches a dead view.
  NibWrapper mNib;
  WindowWrapper mWindow;
  ConfirmationSheet mConfirmationSheet;
  PrinterListView mPrinterListView;
  ProgressSheet mProgressSheet;
  CarbonEventHandler mCarbonEventHandler;
  UsbDeviceFinder mUsbDeviceFinder;
  BonjourDeviceFinder mBonjourDeviceFinder;
};
