#include "VersionWorker.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AttachedDevice.h"
#include "Download.h"
#include "FirmwareLoader.h"
#include "JsonLines.h"
#include "NetworkTransport.h"
#include "ToolHost.h"
#include "UsbTransport.h"
#include "platform/DeviceLocks.h"
#include "platform/FailureCause.h"
#include "platform/FileBytes.h"
#include "platform/Platform.h"
#include "platform/Text.h"

using nlohmann::ordered_json;

namespace {

std::vector<platform::LogHistory::Entry> entries() {
  return platform::current().logHistory->entriesOfDownload();
}

void tellCause(const platform::FailureCause& why) {
  ordered_json members = toJson(why);
  if (why.isInUse) members["in_use"] = true;
  writeLine(std::cout, jsonEvent("cause", members));
}

// The file that a download would choose, with its version.
void tellVersion(const std::wstring& deviceId) {
  ordered_json members{{"version", extractVersionFromIeee1284Id(deviceId)}};
  platform::FileBytes image;
  unsigned int fileVersion = 0;
  if (getFirmware(deviceId, image, fileVersion)) {
    const auto name = platform::Text::fromWide(chooseFirmwareFile(deviceId));
    members["firmware"] = {{"file", std::string(name.utf8())}, {"version", fileVersion}};
  } else if (const auto why = platform::findCause(entries())) {
    tellCause(*why);
  }
  writeLine(std::cout, jsonEvent("version", members));
}

}  // namespace

int runVersionWorker(ToolHost& host, const Target& target) {
  std::optional<QuillUsbDevice> device;
  platform::Data address;
  if (target.connection == Target::Connection::Usb) {
    host.useUsb();
    platform::FailureCause whyNot;
    device = attachedDevice(target, whyNot);
    if (!device) {
      tellCause(whyNot);
      return EXIT_FAILURE;
    }
  } else {
    address = addressRecord(target.address);
  }
  platform::downloadObserver().downloadBegan(platform::Text::fromUtf8(target.name), {});
  bool isKnown = false;
  Download(host).run([&](FirmwareDownloader& downloader) {
    std::unique_ptr<IoTransport> transport;
    if (device) {
      transport = std::make_unique<UsbTransport>(*device, downloader);
    } else {
      transport =
          std::make_unique<NetworkTransport>(address, downloader, platform::DeviceUse::Question);
    }
    downloader.query(std::move(transport), [&](const std::wstring& deviceId) {
      isKnown = true;
      tellVersion(deviceId);
      host.events().quitApplicationEventLoop();
    });
  });
  if (!isKnown) {
    tellCause(platform::causeOfFailure(entries(), false));
  }
  return isKnown ? EXIT_SUCCESS : EXIT_FAILURE;
}
