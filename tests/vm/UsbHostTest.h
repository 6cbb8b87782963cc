// The fixture of the tests of the USB registry: the real registry on a run loop, with a vocabulary
// for finding devices, opening interfaces and transferring bytes.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "PollRunLoop.h"
#include "UsbPrinterProcess.h"
#include "platform/UsbRegistry.h"

// The end of a transfer.
struct TransferEnd {
  platform::IOReturn result;
  std::size_t bytes;

  bool operator==(const TransferEnd&) const = default;
};

void PrintTo(const TransferEnd& end, std::ostream* stream);

// Remembers the end of a transfer that it was given to as refCon.
class TransferRecorder {
 public:
  static void ended(void* refCon, platform::IOReturn result, void* arg0);

  const std::vector<TransferEnd>& ends() const { return mEnds; }

 private:
  std::vector<TransferEnd> mEnds;
};

class UsbHostTest : public testing::Test {
 protected:
  static constexpr std::uint8_t kPrinterClass = 7;
  static constexpr std::uint8_t kVendorClass = 255;

  UsbHostTest();

  static platform::MatchingDictionary printers(std::int64_t vendor = 0x3A71,
                                               std::int64_t product = 0x0C28);

  // The attached printers, with a reference each.
  std::vector<platform::io_service_t> attached(
      const platform::MatchingDictionary& matching = printers());

  // Waits until a printer with that serial number is attached; 0 when it does not come.
  platform::io_service_t awaitPrinter(const std::string& serial = "VP000001");
  bool awaitGone(const std::string& serial = "VP000001");

  // The text of a property; nothing when the entry lacks it, or it is of another type.
  std::optional<std::string> text(platform::io_registry_entry_t entry, const char* key);
  std::optional<platform::PropertyNumber> number(platform::io_registry_entry_t entry,
                                                 const char* key);

  std::unique_ptr<platform::UsbDeviceObject> deviceObject(platform::io_service_t device);

  // The entry of the device's first interface of the class, with a reference; 0 when it has none.
  platform::io_service_t interfaceEntry(platform::io_service_t device, std::uint16_t wantedClass);
  std::unique_ptr<platform::UsbInterfaceObject> interfaceObject(platform::io_service_t device,
                                                                std::uint16_t wantedClass);
  // Opened, and with its event source on the run loop.
  std::unique_ptr<platform::UsbInterfaceObject> openInterface(platform::io_service_t device,
                                                              std::uint16_t wantedClass);

  // Starts a transfer and waits for its end. A transfer that cannot be started ends with the result
  // of that.
  TransferEnd write(platform::UsbInterfaceObject& interface, const std::string& bytes,
                    std::uint32_t timeout = 5000);
  TransferEnd read(platform::UsbInterfaceObject& interface, std::string& bytes, std::size_t size,
                   std::uint32_t timeout = 5000);

  // Waits for the end of `recorder`'s transfer.
  TransferEnd await(const TransferRecorder& recorder);

  // The pipe of that direction (0 out, 1 in).
  static std::uint8_t pipe(platform::UsbInterfaceObject& interface, std::uint8_t direction);

  // The driver that the kernel has bound to the printer's interface; empty for none.
  static std::string kernelDriver(const std::string& serial = "VP000001");

  PollRunLoop mLoop;
  std::unique_ptr<platform::UsbRegistry> mRegistry;
};

// What the host says first, and what the printer then waits for.
extern const std::string kStatusOff;
extern const std::string kIdRequest;
