#include "Device.h"

#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace virtualprinter {

Device::Device(const Options& options, EventLoop& loop, Journal journal)
    : mLoop(loop),
      mJournal(std::move(journal)),
      mPrinter(options.settings, options.faults, loop, mJournal) {
  if (options.usb.wanted) {
    attachToUsb(options);
  } else {
    attachToNetwork(options);
  }
}

void Device::attachToNetwork(const Options& options) {
  mServer = std::make_unique<TcpServer>(mPrinter, mLoop, options.address, options.port);
  mPrinter.addAttachment(*mServer);
  mAnnouncer = makeAnnouncer(options);
  if (mAnnouncer) mPrinter.addAttachment(*mAnnouncer);
}

void Device::attachToUsb(const Options& options) {
  const UsbOptions& usb = options.usb;
  UsbIdentity identity;
  identity.vendorId = usb.vendorId;
  identity.productId = usb.productId;
  identity.manufacturer = usb.manufacturer.value_or(options.settings.manufacturer);
  identity.product = usb.product.value_or(options.settings.model);
  identity.serial = usb.serial.value_or(options.settings.serial);
  mGadget = std::make_unique<UsbGadget>(mPrinter, mLoop, identity, usb.controller);
  mPrinter.addAttachment(*mGadget);
}

std::unique_ptr<Attachment> Device::makeAnnouncer(const Options& options) {
  const Announcement text = announcement(options);
  switch (options.announce) {
    case Announce::No:
      return nullptr;
    case Announce::InProcess:
      return makeInProcessAnnouncer(text, mLoop, mJournal);
    case Announce::Daemon:
    case Announce::Auto:
      break;
  }
  if (auto announcer = makeDaemonAnnouncer(text, mLoop, mJournal)) return announcer;
  if (options.announce == Announce::Daemon) throw std::runtime_error("there is no Avahi daemon");
  return makeInProcessAnnouncer(text, mLoop, mJournal);
}

Announcement Device::announcement(const Options& options) const {
  const PrinterSettings& settings = options.settings;
  Announcement text;
  text.name = settings.name;
  text.port = mServer->port();
  text.hostName = "kx350t-" + std::to_string(getpid());
  text.txt = {{"txtvers", "1"},
              {"qtotal", "1"},
              {"ty", settings.manufacturer + " " + settings.model},
              {"product", "(" + settings.model + ")"},
              {"note", "virtual printer"},
              {"pdl", "application/octet-stream"},
              {"priority", "50"},
              {"Binary", "t"},
              {"Transparent", "t"},
              {"usb_CMD", "PJL,ACL"},
              {"usb_MFG", settings.manufacturer},
              {"usb_MDL", settings.model}};
  for (const auto& [key, value] : options.txt) {
    const auto found = std::find_if(text.txt.begin(), text.txt.end(),
                                    [&key = key](const auto& pair) { return pair.first == key; });
    if (!value) {
      if (found != text.txt.end()) text.txt.erase(found);
    } else if (found != text.txt.end()) {
      found->second = *value;
    } else {
      text.txt.emplace_back(key, *value);
    }
  }
  return text;
}

}  // namespace virtualprinter
