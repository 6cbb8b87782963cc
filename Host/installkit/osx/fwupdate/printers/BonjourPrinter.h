// A printer that announced itself on the network: the name of its service and the first socket
// address that the service resolved to (its record is described in platform/Network.h). The record
// came from the network and may be short.
#pragma once

#include "Printer.h"

class BonjourPrinter : public Printer {
 public:
  BonjourPrinter(const platform::Text& name, const platform::Data& address);

  platform::Text getType() const override;
  // The numeric address; null without an address, or with one that is neither IPv4 nor IPv6.
  platform::Text getInfo() const override;
  const platform::Data& getAddress() const { return mAddress; }
  platform::Text getConfirmationMsgKey() const override;
  void download(FirmwareDownloader& downloader) const override;
  bool equals(const QuillUsbDevice& device) const override;
  // A service of the same name, compared exactly.
  bool equals(platform::NetService* service) const override;

 private:
  platform::Data mAddress;
  platform::Text mInfo;
};
