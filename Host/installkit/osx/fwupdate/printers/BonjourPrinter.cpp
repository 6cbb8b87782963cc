#include "BonjourPrinter.h"

#include <cstddef>
#include <cstdint>
#include <span>

#include "DownloadAnnouncement.h"
#include "NetworkTransport.h"
#include "platform/Network.h"
#include "platform/Platform.h"
#include "platform/ServiceDiscovery.h"
#include "platform/Translatable.h"

using platform::Text;

namespace {

constexpr std::size_t kFamilyOffset = 1;

Text numericAddress(int family, std::span<const std::uint8_t> record, std::size_t offset,
                    std::size_t size) {
  if (record.size() < offset + size) return Text();
  return platform::current().network->numericAddress(family, record.subspan(offset, size));
}

Text addressText(const platform::Data& address) {
  if (!address || address->size() <= kFamilyOffset) return Text();
  switch ((*address)[kFamilyOffset]) {
    case platform::kAddressFamilyIPv4:
      return numericAddress(platform::kAddressFamilyIPv4, *address, 4, 4);
    case platform::kAddressFamilyIPv6:
      return numericAddress(platform::kAddressFamilyIPv6, *address, 8, 16);
    default:
      return Text();
  }
}

}  // namespace

BonjourPrinter::BonjourPrinter(const Text& name, const platform::Data& address)
    : Printer(name), mAddress(address), mInfo(addressText(address)) {}

Text BonjourPrinter::getType() const { return Text::fromUtf8("Bonjour"); }

Text BonjourPrinter::getInfo() const { return mInfo; }

Text BonjourPrinter::getConfirmationMsgKey() const {
  //: The question before a download to a network printer. Its English is in
  //: Localizable_en.ts.
  return Text::fromUtf8(TRANSLATABLE("Localizable", "NETWORK_PRINTER_CONFIRMATION"));
}

void BonjourPrinter::download(FirmwareDownloader& downloader) const {
  logDownload();
  const DownloadAnnouncement announcement(downloader, getName(), getInfo());
  downloadFirmwareThroughNetwork(mAddress, downloader);
}

bool BonjourPrinter::equals(const QuillUsbDevice&) const { return false; }

bool BonjourPrinter::equals(platform::NetService* service) const {
  if (isRemoved()) return false;
  const Text name = service->name();
  return name && getName() && platform::compare(name, getName()) == 0;
}
