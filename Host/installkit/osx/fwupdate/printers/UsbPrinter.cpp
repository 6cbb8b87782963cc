#include "UsbPrinter.h"

#include "Branding.h"
#include "DownloadAnnouncement.h"
#include "UsbTransport.h"
#include "platform/Translatable.h"

using platform::Text;

UsbPrinter::UsbPrinter(QuillUsbDevice& device)
    : Printer(device.getManufacturer() + " " + device.getProduct()),
      mDevice(device),
      mInfo(Text::fromUtf8(device.getSerialNum())) {}

Text UsbPrinter::getType() const { return Text::fromUtf8("USB"); }

Text UsbPrinter::getInfo() const { return mInfo; }

Text UsbPrinter::getConfirmationMsgKey() const {
  if (!Branding::sPromptBeforeUsbDownload) return Text();
  //: The question before a download to a printer on a USB cable. Its English is in
  //: Localizable_en.ts.
  return Text::fromUtf8(TRANSLATABLE("Localizable", "USB_PRINTER_CONFIRMATION"));
}

void UsbPrinter::download(FirmwareDownloader& downloader) const {
  logDownload();
  const DownloadAnnouncement announcement(downloader, getName(), getInfo());
  downloadFirmwareThroughUsb(mDevice, downloader);
}

bool UsbPrinter::equals(const QuillUsbDevice& device) const {
  return !isRemoved() && device == mDevice;
}

bool UsbPrinter::equals(platform::NetService*) const { return false; }
