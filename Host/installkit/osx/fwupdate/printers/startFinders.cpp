#include "startFinders.h"

#include "BonjourDeviceFinder.h"
#include "UsbDeviceFinder.h"

void startFinders(UsbDeviceFinder& usb, BonjourDeviceFinder& network) {
  usb.setupAsyncNotifier(nullptr);
  usb.startAsyncNotifier();
  network.start();
}
