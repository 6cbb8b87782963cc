// A printer that was found on USB. It holds a handle of its own on the device, so that the device
// outlives its removal from the bus for as long as the record lives.
#pragma once

#include "Printer.h"
#include "QuillUsbDevice.h"

class UsbPrinter : public Printer {
 public:
  explicit UsbPrinter(QuillUsbDevice& device);

  platform::Text getType() const override;
  platform::Text getInfo() const override;  // the serial number
  platform::Text getConfirmationMsgKey() const override;
  void download(FirmwareDownloader& downloader) const override;
  // The same device object, not a device with the same serial number.
  bool equals(const QuillUsbDevice& device) const override;
  bool equals(platform::NetService* service) const override;

 private:
  QuillUsbDevice mDevice;
  platform::Text mInfo;
};
