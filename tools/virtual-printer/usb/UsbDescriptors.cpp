#include "UsbDescriptors.h"

#include <endian.h>
#include <linux/usb/ch9.h>
#include <linux/usb/functionfs.h>

#include <cstring>
#include <string_view>

namespace virtualprinter {
namespace {

constexpr std::uint8_t kPrinterClass = 7;
constexpr std::uint8_t kPrinterSubClass = 1;
constexpr std::uint8_t kBidirectional = 2;
constexpr std::uint8_t kVendorClass = 255;
constexpr std::uint16_t kFullSpeedPacket = 64;
constexpr std::uint16_t kHighSpeedPacket = 512;

void append(std::vector<std::uint8_t>& bytes, const void* data, std::size_t size) {
  const auto* const begin = static_cast<const std::uint8_t*>(data);
  bytes.insert(bytes.end(), begin, begin + size);
}

// Collects the descriptors of one speed.
class Builder {
 public:
  explicit Builder(std::uint16_t packet) : mPacket(packet) {}

  UsbPipeFiles addInterface(std::uint8_t interfaceClass, std::uint8_t subClass,
                            std::uint8_t protocol, bool inPipeFirst) {
    usb_interface_descriptor interface {};
    interface.bLength = USB_DT_INTERFACE_SIZE;
    interface.bDescriptorType = USB_DT_INTERFACE;
    interface.bInterfaceNumber = mInterfaces++;
    interface.bNumEndpoints = 2;
    interface.bInterfaceClass = interfaceClass;
    interface.bInterfaceSubClass = subClass;
    interface.bInterfaceProtocol = protocol;
    interface.iInterface = mInterfaces;
    add(&interface, interface.bLength);
    UsbPipeFiles files;
    if (inPipeFirst) files.in = addEndpoint(USB_DIR_IN);
    files.out = addEndpoint(USB_DIR_OUT);
    if (!inPipeFirst) files.in = addEndpoint(USB_DIR_IN);
    return files;
  }

  std::uint32_t count() const { return mCount; }
  std::uint8_t interfaces() const { return mInterfaces; }
  const std::vector<std::uint8_t>& bytes() const { return mBytes; }

 private:
  std::string addEndpoint(std::uint8_t direction) {
    ++mEndpoints;
    usb_endpoint_descriptor_no_audio endpoint{};
    endpoint.bLength = USB_DT_ENDPOINT_SIZE;
    endpoint.bDescriptorType = USB_DT_ENDPOINT;
    endpoint.bEndpointAddress = static_cast<std::uint8_t>(direction | mEndpoints);
    endpoint.bmAttributes = USB_ENDPOINT_XFER_BULK;
    endpoint.wMaxPacketSize = htole16(mPacket);
    add(&endpoint, endpoint.bLength);
    return "ep" + std::to_string(mEndpoints);
  }

  void add(const void* descriptor, std::size_t size) {
    append(mBytes, descriptor, size);
    ++mCount;
  }

  std::uint16_t mPacket;
  std::vector<std::uint8_t> mBytes;
  std::uint32_t mCount = 0;
  std::uint8_t mInterfaces = 0;
  std::uint8_t mEndpoints = 0;
};

void addInterfaces(Builder& builder, const UsbShape& shape, UsbDescriptors& result) {
  // The vendor's interface comes first, as a host must not count on any order.
  if (shape.hasVendorInterface) {
    result.vendor = builder.addInterface(kVendorClass, 0, 0, shape.inPipeFirst);
  }
  if (shape.hasPrinterInterface) {
    result.printer =
        builder.addInterface(kPrinterClass, kPrinterSubClass, kBidirectional, shape.inPipeFirst);
  }
}

std::vector<std::uint8_t> stringTable(std::uint8_t interfaces, const UsbShape& shape) {
  std::string texts;
  if (shape.hasVendorInterface) texts += std::string("Web") + '\0';
  if (shape.hasPrinterInterface) texts += std::string("Printer") + '\0';
  usb_functionfs_strings_head head{};
  const std::uint16_t language = htole16(0x0409);
  head.magic = htole32(FUNCTIONFS_STRINGS_MAGIC);
  head.length = htole32(static_cast<std::uint32_t>(sizeof head + sizeof language + texts.size()));
  head.str_count = htole32(interfaces);
  head.lang_count = htole32(1);
  std::vector<std::uint8_t> bytes;
  append(bytes, &head, sizeof head);
  append(bytes, &language, sizeof language);
  append(bytes, texts.data(), texts.size());
  return bytes;
}

}  // namespace

UsbDescriptors describeInterfaces(const UsbShape& shape) {
  UsbDescriptors result;
  Builder full(kFullSpeedPacket);
  Builder high(kHighSpeedPacket);
  addInterfaces(full, shape, result);
  addInterfaces(high, shape, result);

  usb_functionfs_descs_head_v2 head{};
  const std::uint32_t counts[] = {htole32(full.count()), htole32(high.count())};
  head.magic = htole32(FUNCTIONFS_DESCRIPTORS_MAGIC_V2);
  head.flags = htole32(FUNCTIONFS_HAS_FS_DESC | FUNCTIONFS_HAS_HS_DESC);
  head.length = htole32(static_cast<std::uint32_t>(sizeof head + sizeof counts +
                                                   full.bytes().size() + high.bytes().size()));
  append(result.descriptors, &head, sizeof head);
  append(result.descriptors, counts, sizeof counts);
  append(result.descriptors, full.bytes().data(), full.bytes().size());
  append(result.descriptors, high.bytes().data(), high.bytes().size());
  result.strings = stringTable(full.interfaces(), shape);
  return result;
}

}  // namespace virtualprinter
