#include "UI.h"

#include <stdexcept>

#include "Branding.h"
#include "ErrorMessage.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"
#include "startFinders.h"

UI::UI(FirmwareDownloader& downloader)
    : mWindow(platform::Text::fromUtf8("PrinterSelectWindow"), mNib),
      mConfirmationSheet(mNib.get(), mWindow.get()),
      mPrinterListView(mWindow.get()),
      mProgressSheet(mNib.get(), mWindow.get()),
      mCarbonEventHandler(mWindow.get(), mPrinterListView, mProgressSheet, mConfirmationSheet,
                          downloader),
      mUsbDeviceFinder(mPrinterListView),
      mBonjourDeviceFinder(Branding::sManufacturerStr, Branding::sModelStr, mPrinterListView) {
  const platform::OSStatus status = platform::current().toolkit->setMenuBarFromNib(
      mNib.get(), platform::Text::fromUtf8("MenuBar"));
  if (status != platform::noErr) {
    throw std::runtime_error(buildErrorMessage("Failed to set menu bar from NIB.", status));
  }
}

void UI::run() {
  mCarbonEventHandler.initialise();
  startFinders(mUsbDeviceFinder, mBonjourDeviceFinder);
  platform::current().events->runApplicationEventLoop();
}
