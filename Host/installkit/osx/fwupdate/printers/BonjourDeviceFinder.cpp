#include "BonjourDeviceFinder.h"

#include <ostream>
#include <string_view>

#include "Log.h"
#include "PrinterListView.h"
#include "platform/Assertion.h"
#include "platform/Platform.h"
#include "platform/TxtRecord.h"

using platform::NetService;
using platform::NetServiceBrowser;
using platform::StreamError;
using platform::Text;

namespace {

constexpr char kSourcePath[] = "Host/installkit/osx/fwupdate/BonjourDeviceFinder";

constexpr char kServiceType[] = "_pdl-datastream._tcp";
constexpr char kAllDomains[] = "";
constexpr double kResolveTimeoutSeconds = 30.0;

constexpr char kManufacturerKey[] = "usb_MFG";
constexpr char kModelKey[] = "usb_MDL";

// Text that comes from outside may begin with a byte order mark, which is not part of it.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

Text textFromOutside(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  return Text::fromUtf8(bytes);
}

// Null when there is no such key, or its value is no text.
Text GetTxtRecordValueString(const platform::TxtRecord& txt, const char* key) {
  const auto bytes = txt.value(key);
  Text value = bytes ? textFromOutside(*bytes) : Text();
  Log<5>() << key << ": " << value << std::flush;
  return value;
}

bool isSame(const Text& value, const Text& wanted) {
  return value && wanted && platform::compare(value, wanted) == 0;
}

}  // namespace

BonjourDeviceFinder::BonjourDeviceFinder(const Text& manufacturer, const Text& model,
                                         PrinterListView& view)
    : mManufacturer(manufacturer), mModel(model), mView(view) {}

BonjourDeviceFinder::~BonjourDeviceFinder() {
  if (mBrowser == nullptr) return;
  mBrowser->stopSearch(&mStreamError);
  mBrowser->unschedule();
  mBrowser->invalidate();
}

void BonjourDeviceFinder::start() {
  mBrowser = platform::current().services->createBrowser(serviceBrowseCallback, this);
  if (mBrowser == nullptr) {
    Log<3>() << "Failed to create Bonjour service browser." << std::flush;
    return;
  }
  mBrowser->schedule();
  if (!mBrowser->searchForServices(Text::fromUtf8(kAllDomains), Text::fromUtf8(kServiceType),
                                   &mStreamError)) {
    Log<3>() << "Failed to start Bonjour service search." << std::flush;
  }
}

void BonjourDeviceFinder::serviceBrowseCallback(NetServiceBrowser*, unsigned long flags,
                                                NetService* domainOrService, StreamError* error,
                                                void* info) {
  platform::assertAt(info != nullptr, "info != 0", "serviceBrowseCallback", kSourcePath, __LINE__);
  if (checkForError(error, info, domainOrService)) return;
  static_cast<BonjourDeviceFinder*>(info)->handleServiceFound(flags, domainOrService);
}

void BonjourDeviceFinder::serviceResolvedCallback(NetService* service, StreamError* error,
                                                  void* info) {
  platform::assertAt(info != nullptr, "info != 0", "serviceResolvedCallback", kSourcePath,
                     __LINE__);
  if (checkForError(error, info, service)) return;
  static_cast<BonjourDeviceFinder*>(info)->handleServiceResolved(service);
}

bool BonjourDeviceFinder::checkForError(StreamError* streamError, void* info, NetService* object) {
  platform::assertAt(streamError != nullptr, "streamError != 0", "checkForError", kSourcePath,
                     __LINE__);
  bool isError = false;
  if (streamError->error != 0) {
    Log<3>() << "Bonjour discovery error: domain=" << std::dec << streamError->domain
             << " error code=" << streamError->error << " [0x" << std::hex << streamError->error
             << std::dec << "]" << std::flush;
    isError = true;
  }
  if (info == nullptr || object == nullptr) {
    Log<3>() << "Bonjour discovery error: a mandatory pointer was null info=" << info
             << " service=" << Logger::CfObj(object) << std::flush;
    return true;
  }
  return isError;
}

// The logger stays in hexadecimal mode.
void BonjourDeviceFinder::handleServiceFound(unsigned long flags, NetService* domainOrService) {
  Log<5>() << "Bonjour service callback: flags=0x" << std::hex << flags
           << ", service: " << Logger::CfObj(domainOrService) << std::flush;
  if ((flags & platform::kServiceFlagIsDomain) != 0) return;
  if ((flags & platform::kServiceFlagRemove) != 0) {
    removeService(domainOrService);
  } else {
    addService(domainOrService);
  }
}

void BonjourDeviceFinder::addService(NetService* service) {
  if (!service->setClient(serviceResolvedCallback, this)) return;
  service->schedule();
  if (!service->resolveWithTimeout(kResolveTimeoutSeconds, &mStreamError)) {
    service->unschedule();
    service->setClient(nullptr, nullptr);
  }
}

// The view ignores services that it does not show.
void BonjourDeviceFinder::removeService(NetService* service) {
  Log<5>() << "<- Removing: " << Logger::CfObj(service) << std::flush;
  mView.removeBonjourPrinter(service);
}

void BonjourDeviceFinder::handleServiceResolved(NetService* service) {
  const platform::Data txtData = service->txtData();
  if (txtData == nullptr) {
    Log<3>() << "No data in TXT record for service: " << Logger::CfObj(service) << std::flush;
  } else if (isWanted(txtData)) {
    addPrinter(service);
  } else {
    Log<5>() << "-> Not matched, discarding" << std::flush;
  }
  service->unschedule();
  service->setClient(nullptr, nullptr);
  service->cancel();
}

bool BonjourDeviceFinder::isWanted(const platform::Data& txtData) const {
  const platform::TxtRecord txt(*txtData);
  const Text manufacturer = GetTxtRecordValueString(txt, kManufacturerKey);
  const Text model = GetTxtRecordValueString(txt, kModelKey);
  return isSame(manufacturer, mManufacturer) && isSame(model, mModel);
}

// A printer with several addresses is used by its first.
void BonjourDeviceFinder::addPrinter(NetService* service) {
  const auto addresses = service->addresses();
  if (addresses == nullptr) {
    Log<3>() << "-> No addresses found for service: " << Logger::CfObj(service) << std::flush;
    return;
  }
  const platform::Data address = addresses->empty() ? nullptr : addresses->front();
  const Text name = service->name();
  if (name.isNull() || address == nullptr) {
    Log<3>() << "-> No name or IP address found for service: " << Logger::CfObj(service)
             << std::flush;
    return;
  }
  Log<5>() << "-> Adding: " << name << std::flush;
  mView.addBonjourPrinter(name, address);
}
