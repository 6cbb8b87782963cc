#include "UsbHostTest.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <ostream>

#include "platform/libusb/LibusbRegistry.h"

using std::string_literals::operator""s;
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

void PrintTo(const TransferEnd& end, std::ostream* stream) {
  *stream << "0x" << std::hex << static_cast<std::uint32_t>(end.result) << std::dec << " with "
          << end.bytes << " bytes";
}

void TransferRecorder::ended(void* refCon, IOReturn result, void* arg0) {
  static_cast<TransferRecorder*>(refCon)->mEnds.push_back(
      {result, reinterpret_cast<std::uintptr_t>(arg0)});
}

UsbHostTest::UsbHostTest() : mRegistry(platform::makeLibusbRegistry(mLoop)) {}

platform::MatchingDictionary UsbHostTest::printers(std::int64_t vendor, std::int64_t product) {
  platform::MatchingDictionary matching{Text::fromUtf8("IOUSBDevice"), {}};
  matching.properties.entries = {
      {Text::fromUtf8("idVendor"), platform::PropertyNumber{vendor, 2}},
      {Text::fromUtf8("idProduct"), platform::PropertyNumber{product, 4}}};
  return matching;
}

std::vector<io_service_t> UsbHostTest::attached(const platform::MatchingDictionary& matching) {
  io_iterator_t iterator = 0;
  EXPECT_EQ(mRegistry->matchingServices(matching, iterator), kIOReturnSuccess);
  std::vector<io_service_t> found;
  while (const io_service_t service = mRegistry->iteratorNext(iterator)) found.push_back(service);
  mRegistry->release(iterator);
  return found;
}

io_service_t UsbHostTest::awaitPrinter(const std::string& serial) {
  io_service_t found = 0;
  mLoop.runUntil([&] {
    for (const io_service_t service : attached()) {
      if (found == 0 && text(service, "USB Serial Number") == serial) {
        found = service;
      } else {
        mRegistry->release(service);
      }
    }
    return found != 0;
  });
  return found;
}

bool UsbHostTest::awaitGone(const std::string& serial) {
  return mLoop.runUntil([&] {
    bool isHere = false;
    for (const io_service_t service : attached()) {
      isHere = isHere || text(service, "USB Serial Number") == serial;
      mRegistry->release(service);
    }
    return !isHere;
  });
}

std::optional<std::string> UsbHostTest::text(platform::io_registry_entry_t entry, const char* key) {
  const std::optional<platform::PropertyValue> value = mRegistry->property(entry, key);
  if (!value || !std::holds_alternative<Text>(*value)) return std::nullopt;
  return std::string(std::get<Text>(*value).utf8());
}

std::optional<platform::PropertyNumber> UsbHostTest::number(platform::io_registry_entry_t entry,
                                                            const char* key) {
  const std::optional<platform::PropertyValue> value = mRegistry->property(entry, key);
  if (!value || !std::holds_alternative<platform::PropertyNumber>(*value)) return std::nullopt;
  return std::get<platform::PropertyNumber>(*value);
}

std::unique_ptr<platform::UsbDeviceObject> UsbHostTest::deviceObject(io_service_t device) {
  std::unique_ptr<platform::UsbPlugIn> plugIn;
  std::unique_ptr<platform::UsbDeviceObject> object;
  EXPECT_EQ(mRegistry->createPlugIn(device, platform::UsbRegistry::ClientType::Device, plugIn),
            kIOReturnSuccess);
  EXPECT_EQ(plugIn->queryDevice(object), kIOReturnSuccess);
  return object;
}

io_service_t UsbHostTest::interfaceEntry(io_service_t device, std::uint16_t wantedClass) {
  platform::IOUSBFindInterfaceRequest request;
  request.bInterfaceClass = wantedClass;
  io_iterator_t iterator = 0;
  EXPECT_EQ(deviceObject(device)->createInterfaceIterator(request, iterator), kIOReturnSuccess);
  const io_service_t entry = mRegistry->iteratorNext(iterator);
  mRegistry->release(iterator);
  return entry;
}

std::unique_ptr<platform::UsbInterfaceObject> UsbHostTest::interfaceObject(
    io_service_t device, std::uint16_t wantedClass) {
  const io_service_t entry = interfaceEntry(device, wantedClass);
  std::unique_ptr<platform::UsbPlugIn> plugIn;
  std::unique_ptr<platform::UsbInterfaceObject> object;
  EXPECT_EQ(mRegistry->createPlugIn(entry, platform::UsbRegistry::ClientType::Interface, plugIn),
            kIOReturnSuccess);
  EXPECT_EQ(plugIn->queryInterface(object), kIOReturnSuccess);
  mRegistry->release(entry);
  return object;
}

std::unique_ptr<platform::UsbInterfaceObject> UsbHostTest::openInterface(
    io_service_t device, std::uint16_t wantedClass) {
  auto object = interfaceObject(device, wantedClass);
  EXPECT_EQ(object->open(), kIOReturnSuccess);
  platform::UsbEventSource* source = nullptr;
  EXPECT_EQ(object->createAsyncEventSource(source), kIOReturnSuccess);
  source->addTo(mLoop);
  return object;
}

std::uint8_t UsbHostTest::pipe(platform::UsbInterfaceObject& interface, std::uint8_t direction) {
  std::uint8_t count = 0;
  interface.getNumEndpoints(count);
  for (std::uint8_t pipe = 1; pipe <= count; ++pipe) {
    platform::UsbPipeProperties properties;
    interface.getPipeProperties(pipe, properties);
    if (properties.direction == direction) return pipe;
  }
  return 255;
}

TransferEnd UsbHostTest::await(const TransferRecorder& recorder) {
  if (!mLoop.runUntil([&] { return !recorder.ends().empty(); })) {
    ADD_FAILURE() << "the transfer does not end";
    return {-1, 0};
  }
  return recorder.ends().front();
}

TransferEnd UsbHostTest::write(platform::UsbInterfaceObject& interface, const std::string& bytes,
                               std::uint32_t timeout) {
  TransferRecorder recorder;
  const IOReturn started = interface.writePipeAsyncTO(
      pipe(interface, 0), bytes.data(), static_cast<std::uint32_t>(bytes.size()), timeout, timeout,
      TransferRecorder::ended, &recorder);
  return started == kIOReturnSuccess ? await(recorder) : TransferEnd{started, 0};
}

TransferEnd UsbHostTest::read(platform::UsbInterfaceObject& interface, std::string& bytes,
                              std::size_t size, std::uint32_t timeout) {
  TransferRecorder recorder;
  bytes.assign(size, '\0');
  const IOReturn started =
      interface.readPipeAsyncTO(pipe(interface, 1), bytes.data(), static_cast<std::uint32_t>(size),
                                timeout, timeout, TransferRecorder::ended, &recorder);
  const TransferEnd end = started == kIOReturnSuccess ? await(recorder) : TransferEnd{started, 0};
  bytes.resize(end.bytes);
  return end;
}

std::string UsbHostTest::kernelDriver(const std::string& serial) {
  namespace fs = std::filesystem;
  for (const fs::directory_entry& device : fs::directory_iterator("/sys/bus/usb/devices")) {
    std::string line;
    std::ifstream file(device.path() / "serial");
    if (!std::getline(file, line) || line != serial) continue;
    const std::string name = device.path().filename().string();
    for (const fs::directory_entry& part : fs::directory_iterator(device.path())) {
      std::ifstream classFile(part.path() / "bInterfaceClass");
      if (!std::getline(classFile, line) || line != "07") continue;
      std::error_code none;
      return fs::read_symlink(part.path() / "driver", none).filename().string();
    }
  }
  return {};
}
