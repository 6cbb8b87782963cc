// How fast an image goes to a printer on USB: one write through the program's USB registry, beside
// libusb's own synchronous write of the same bytes at the same point of the conversation, in turns.
// Needs a USB device controller and root, so it runs in the virtual machine of the tests.
#include <libusb-1.0/libusb.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "Figures.h"
#include "PollRunLoop.h"
#include "UsbHost.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"
#include "platform/libusb/LibusbRegistry.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::string_literals;

constexpr int kRuns = 41;
constexpr std::uint32_t kTimeout = 5000;  // milliseconds; long, so that nothing is cut off
constexpr std::size_t kPacket = 512;
// The kernel driver has just given way, which udev is told of and busy with for a moment.
constexpr auto kCalm = std::chrono::milliseconds(200);
const std::string kUel = "\x1b%-12345X";

void require(bool holds, const std::string& what) {
  if (!holds) throw std::runtime_error(what);
}

// The printer is told to fail the burn, so the checksum, which is zero here, does not matter.
std::string burnHeader(std::size_t length) {
  std::string header =
      kUel + "@PJL ENTER LANGUAGE=ACL\r\n" + "\x00\xAC\x00\x0F\x04\x00\x00\x00\x00\x00\x00\x00"s;
  for (const int shift : {24, 16, 8, 0}) header.push_back(static_cast<char>(length >> shift));
  return header;
}

// The printer interface, opened.
class Wire {
 public:
  virtual ~Wire() = default;
  virtual void write(const std::string& bytes) = 0;
  virtual std::string read() = 0;  // one packet
};

// An update up to the answer to the burn; the time of the image's write in milliseconds.
double sendImage(Wire&& wire, const std::string& image) {
  std::this_thread::sleep_for(kCalm);
  wire.write(kStatusOff);
  wire.write(kIdRequest);
  require(wire.read().size() == 16, "no answer to the ID request");
  require(!wire.read().empty(), "no device ID");
  wire.write(burnHeader(image.size()));
  const Clock::time_point begin = Clock::now();
  wire.write(image);
  const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
  wire.write(kUel);
  require(wire.read().size() == 16, "no answer to the burn");
  return time.count();
}

// The program's registry.
class Host {
 public:
  Host() : mDevice(mHost.awaitPrinter()) {
    require(mDevice != 0, "no printer appears");
    require(mLoop.runUntil([] { return kernelDriver() == "usblp"; }), "usblp does not bind");
  }

  // The printer interface, opened.
  class Interface;

 private:
  PollRunLoop mLoop;
  std::unique_ptr<platform::UsbRegistry> mRegistry = platform::makeLibusbRegistry(mLoop);
  UsbHost mHost{*mRegistry, mLoop,
                [this](const std::function<bool()>& done) { return mLoop.runUntil(done); }};
  platform::io_service_t mDevice;
};

class Host::Interface : public Wire {
 public:
  explicit Interface(Host& host)
      : mHost(host.mHost), mInterface(mHost.openInterface(host.mDevice, UsbHost::kPrinterClass)) {}

  void write(const std::string& bytes) override {
    const TransferEnd end = mHost.write(*mInterface, bytes, kTimeout);
    require(end == TransferEnd{platform::kIOReturnSuccess, bytes.size()}, "a write fails");
  }

  std::string read() override {
    std::string bytes;
    const TransferEnd end = mHost.read(*mInterface, bytes, kPacket, kTimeout);
    require(end.result == platform::kIOReturnSuccess, "a read fails");
    return bytes;
  }

 private:
  UsbHost& mHost;
  std::unique_ptr<platform::UsbInterfaceObject> mInterface;
};

// libusb and nothing else.
class PlainInterface : public Wire {
 public:
  PlainInterface() {
    libusb_context* context = nullptr;
    require(libusb_init(&context) == LIBUSB_SUCCESS, "libusb does not start");
    mContext.reset(context);
    mHandle.reset(libusb_open_device_with_vid_pid(context, 0x3A71, 0x0C28));
    require(mHandle != nullptr, "libusb cannot open the printer");
    findInterface();
    libusb_set_auto_detach_kernel_driver(mHandle.get(), 1);
    require(libusb_claim_interface(mHandle.get(), mNumber) == LIBUSB_SUCCESS, "no claim");
  }

  ~PlainInterface() override { libusb_release_interface(mHandle.get(), mNumber); }

  void write(const std::string& bytes) override {
    auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
    const auto size = static_cast<int>(bytes.size());
    int count = 0;
    require(libusb_bulk_transfer(mHandle.get(), mOut, data, size, &count, kTimeout) == 0 &&
                count == size,
            "a plain write fails");
  }

  std::string read() override {
    std::array<unsigned char, kPacket> packet;
    int count = 0;
    require(libusb_bulk_transfer(mHandle.get(), mIn, packet.data(), kPacket, &count, kTimeout) == 0,
            "a plain read fails");
    return {packet.begin(), packet.begin() + count};
  }

 private:
  void findInterface() {
    libusb_config_descriptor* found = nullptr;
    require(libusb_get_active_config_descriptor(libusb_get_device(mHandle.get()), &found) == 0,
            "no configuration");
    const std::unique_ptr<libusb_config_descriptor, decltype(&libusb_free_config_descriptor)>
        configuration(found, libusb_free_config_descriptor);
    for (int i = 0; i < configuration->bNumInterfaces; ++i) {
      const libusb_interface_descriptor& each = configuration->interface[i].altsetting[0];
      if (each.bInterfaceClass != LIBUSB_CLASS_PRINTER) continue;
      mNumber = each.bInterfaceNumber;
      for (int j = 0; j < each.bNumEndpoints; ++j) {
        const std::uint8_t address = each.endpoint[j].bEndpointAddress;
        ((address & LIBUSB_ENDPOINT_IN) != 0 ? mIn : mOut) = address;
      }
    }
    require(mIn != 0 && mOut != 0, "no printer interface");
  }

  std::unique_ptr<libusb_context, decltype(&libusb_exit)> mContext{nullptr, libusb_exit};
  std::unique_ptr<libusb_device_handle, decltype(&libusb_close)> mHandle{nullptr, libusb_close};
  int mNumber = 0;
  std::uint8_t mIn = 0;
  std::uint8_t mOut = 0;
};

void measure(Host& host, const std::string& name, std::size_t size) {
  const std::string image(size, 'x');
  bench::Samples product;
  bench::Samples plain;
  const auto runProduct = [&] { product.push_back(sendImage(Host::Interface(host), image)); };
  const auto runPlain = [&] { plain.push_back(sendImage(PlainInterface(), image)); };
  for (int run = 0; run < kRuns; ++run) {
    if (run % 2 == 0) runProduct();
    runPlain();
    if (run % 2 == 1) runProduct();
  }
  const double productTime = bench::median(product);
  const double plainTime = bench::median(plain);
  // Bytes per millisecond are thousandths of a MB/s.
  const double speed = static_cast<double>(size) / productTime;
  bench::printHeading("One write of " + name + " over USB");
  bench::printFigure("through the USB registry", product, "ms");
  bench::printFigure("libusb_bulk_transfer", plain, "ms");
  std::printf("  speed: %.1f MB/s, plain %.1f MB/s; ratio of the times: %.2f  aim: 1.05\n",
              speed / 1000, static_cast<double>(size) / plainTime / 1000, productTime / plainTime);
  std::printf("  a time-out of 200 ms lets pass: %.1f MB\n", speed * 200 / 1e6);
  std::fflush(stdout);
}

}  // namespace

int main() try {
  const UsbPrinterProcess printer({"--fault", "fail-burn", "--burn-seconds", "0"});
  Host host;
  measure(host, "100 kB", 100000);
  measure(host, "512 KiB", 512 << 10);
  measure(host, "1 MiB", 1 << 20);
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-usb: " << error.what() << '\n';
  return EXIT_FAILURE;
}
