#include "UsbHost.h"

#include <gtest/gtest.h>

#include <utility>

using namespace std::string_literals;
using platform::io_iterator_t;
using platform::io_service_t;
using platform::IOReturn;
using platform::kIOReturnSuccess;
using platform::Text;

const std::string kStatusOff = "\x1b%-12345X@PJL USTATUSOFF\n\x1b%-12345X";
const std::string kIdRequest =
    "\x1b%-12345X@PJL ENTER LANGUAGE=ACL\r\n"
    "\x00\xAC\x00\x06\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x1b%-12345X"s;
const std::string kIdAnswer =
    "\x00\xAC\x00\x06\x00\x01\x00\x6A\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x6AMFG:Veltra;CMD:PJL,ACL;MDL:KX350T;CLS:PRINTER;DES:Veltra KX350T;SN:VP000001;"
    "LIC:QT725013;FWVER:00000100;"s;

namespace {

constexpr IOReturn kNoPlugIn = platform::kIOReturnNotFound;

}  // namespace

UsbHost::UsbHost(platform::UsbRegistry& registry, platform::RunLoop& runLoop, RunUntil runUntil)
    : mRegistry(registry), mRunLoop(runLoop), mRunUntil(std::move(runUntil)) {}

platform::MatchingDictionary UsbHost::printers(std::int64_t vendor, std::int64_t product) {
  platform::MatchingDictionary matching{Text::fromUtf8("IOUSBDevice"), {}};
  matching.properties.entries = {
      {Text::fromUtf8("idVendor"), platform::PropertyNumber{vendor, 2}},
      {Text::fromUtf8("idProduct"), platform::PropertyNumber{product, 4}}};
  return matching;
}

std::vector<io_service_t> UsbHost::attached(const platform::MatchingDictionary& matching) {
  io_iterator_t iterator = 0;
  EXPECT_EQ(mRegistry.matchingServices(matching, iterator), kIOReturnSuccess);
  std::vector<io_service_t> found;
  while (const io_service_t service = mRegistry.iteratorNext(iterator)) found.push_back(service);
  mRegistry.release(iterator);
  return found;
}

io_service_t UsbHost::awaitPrinter(const std::string& serial) {
  io_service_t found = 0;
  mRunUntil([&] {
    for (const io_service_t service : attached()) {
      if (found == 0 && text(service, "USB Serial Number") == serial) {
        found = service;
      } else {
        mRegistry.release(service);
      }
    }
    return found != 0;
  });
  EXPECT_NE(found, 0u) << "no printer " << serial << " comes";
  return found;
}

bool UsbHost::awaitGone(const std::string& serial) {
  return mRunUntil([&] {
    bool isHere = false;
    for (const io_service_t service : attached()) {
      isHere = isHere || text(service, "USB Serial Number") == serial;
      mRegistry.release(service);
    }
    return !isHere;
  });
}

std::optional<std::string> UsbHost::text(platform::io_registry_entry_t entry, const char* key) {
  const std::optional<platform::PropertyValue> value = mRegistry.property(entry, key);
  if (!value || !std::holds_alternative<Text>(*value)) return std::nullopt;
  return std::string(std::get<Text>(*value).utf8());
}

std::optional<platform::PropertyNumber> UsbHost::number(platform::io_registry_entry_t entry,
                                                        const char* key) {
  const std::optional<platform::PropertyValue> value = mRegistry.property(entry, key);
  if (!value || !std::holds_alternative<platform::PropertyNumber>(*value)) return std::nullopt;
  return std::get<platform::PropertyNumber>(*value);
}

std::unique_ptr<platform::UsbPlugIn> UsbHost::plugIn(io_service_t entry,
                                                     platform::UsbRegistry::ClientType type) {
  std::unique_ptr<platform::UsbPlugIn> plugIn;
  const IOReturn result = mRegistry.createPlugIn(entry, type, plugIn);
  EXPECT_EQ(result, plugIn ? kIOReturnSuccess : platform::kIOReturnBadArgument);
  return plugIn;
}

std::unique_ptr<platform::UsbDeviceObject> UsbHost::deviceObject(io_service_t device) {
  const auto plugIn = this->plugIn(device, platform::UsbRegistry::ClientType::Device);
  std::unique_ptr<platform::UsbDeviceObject> object;
  EXPECT_EQ(plugIn ? plugIn->queryDevice(object) : kNoPlugIn, kIOReturnSuccess);
  return object;
}

std::vector<io_service_t> UsbHost::interfaceEntries(
    io_service_t device, const platform::IOUSBFindInterfaceRequest& request) {
  io_iterator_t iterator = 0;
  EXPECT_EQ(deviceObject(device)->createInterfaceIterator(request, iterator), kIOReturnSuccess);
  std::vector<io_service_t> entries;
  while (const io_service_t entry = mRegistry.iteratorNext(iterator)) entries.push_back(entry);
  mRegistry.release(iterator);
  return entries;
}

io_service_t UsbHost::interfaceEntry(io_service_t device, std::uint16_t wantedClass) {
  platform::IOUSBFindInterfaceRequest request;
  request.bInterfaceClass = wantedClass;
  const std::vector<io_service_t> entries = interfaceEntries(device, request);
  for (std::size_t i = 1; i < entries.size(); ++i) mRegistry.release(entries[i]);
  return entries.empty() ? 0 : entries.front();
}

std::unique_ptr<platform::UsbInterfaceObject> UsbHost::interfaceObject(io_service_t device,
                                                                       std::uint16_t wantedClass) {
  const io_service_t entry = interfaceEntry(device, wantedClass);
  const auto plugIn = this->plugIn(entry, platform::UsbRegistry::ClientType::Interface);
  std::unique_ptr<platform::UsbInterfaceObject> object;
  EXPECT_EQ(plugIn ? plugIn->queryInterface(object) : kNoPlugIn, kIOReturnSuccess);
  mRegistry.release(entry);
  return object;
}

std::unique_ptr<platform::UsbInterfaceObject> UsbHost::openInterface(io_service_t device,
                                                                     std::uint16_t wantedClass) {
  auto object = interfaceObject(device, wantedClass);
  EXPECT_EQ(object->open(), kIOReturnSuccess);
  addEventSource(*object);
  return object;
}

void UsbHost::addEventSource(platform::UsbInterfaceObject& interface) {
  platform::UsbEventSource* source = nullptr;
  ASSERT_EQ(interface.createAsyncEventSource(source), kIOReturnSuccess);
  source->addTo(mRunLoop);
}

std::uint8_t UsbHost::pipe(platform::UsbInterfaceObject& interface,
                           platform::UsbDirection direction) {
  std::uint8_t count = 0;
  interface.getNumEndpoints(count);
  for (std::uint8_t pipe = 1; pipe <= count; ++pipe) {
    platform::UsbPipeProperties properties;
    interface.getPipeProperties(pipe, properties);
    if (properties.direction == direction) return pipe;
  }
  return 255;
}

IOReturn UsbHost::startWrite(platform::UsbInterfaceObject& interface, const std::string& bytes,
                             TransferRecorder& recorder, std::uint32_t timeout) {
  return interface.writePipeAsyncTO(pipe(interface, platform::UsbDirection::Out), bytes.data(),
                                    static_cast<std::uint32_t>(bytes.size()), timeout, timeout,
                                    TransferRecorder::ended, &recorder);
}

IOReturn UsbHost::startRead(platform::UsbInterfaceObject& interface, std::string& bytes,
                            TransferRecorder& recorder, std::uint32_t timeout) {
  return interface.readPipeAsyncTO(pipe(interface, platform::UsbDirection::In), bytes.data(),
                                   static_cast<std::uint32_t>(bytes.size()), timeout, timeout,
                                   TransferRecorder::ended, &recorder);
}

TransferEnd UsbHost::await(const TransferRecorder& recorder) {
  if (!mRunUntil([&] { return !recorder.ends().empty(); })) {
    ADD_FAILURE() << "the transfer does not end";
    return {-1, 0};
  }
  return recorder.ends().front();
}

TransferEnd UsbHost::write(platform::UsbInterfaceObject& interface, const std::string& bytes,
                           std::uint32_t timeout) {
  TransferRecorder recorder;
  return endOf(startWrite(interface, bytes, recorder, timeout), recorder);
}

TransferEnd UsbHost::read(platform::UsbInterfaceObject& interface, std::string& bytes,
                          std::size_t size, std::uint32_t timeout) {
  TransferRecorder recorder;
  bytes.assign(size, '\0');
  const TransferEnd end = endOf(startRead(interface, bytes, recorder, timeout), recorder);
  bytes.resize(end.bytes);
  return end;
}

TransferEnd UsbHost::endOf(IOReturn started, const TransferRecorder& recorder) {
  EXPECT_TRUE(recorder.ends().empty()) << "the end is told within the start";
  return started == kIOReturnSuccess ? await(recorder) : TransferEnd{started, 0};
}
