// The host's side of a USB bus, for tests of a registry: finds printers, opens their interfaces and
// transfers bytes. What goes wrong on the way is a failure of the test.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TransferRecorder.h"
#include "platform/UsbRegistry.h"

class UsbHost {
 public:
  static constexpr std::uint8_t kPrinterClass = 7;
  static constexpr std::uint8_t kVendorClass = 255;

  // Turns the run loop until `done` holds; false when it does not hold in time.
  using RunUntil = std::function<bool(const std::function<bool()>& done)>;

  // Registry and run loop must outlive the host.
  UsbHost(platform::UsbRegistry& registry, platform::RunLoop& runLoop, RunUntil runUntil);

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

  // Null for an entry that is unknown or not of that kind.
  std::unique_ptr<platform::UsbPlugIn> plugIn(platform::io_service_t entry,
                                              platform::UsbRegistry::ClientType type);
  std::unique_ptr<platform::UsbDeviceObject> deviceObject(platform::io_service_t device);

  // The entries of the device's interfaces that match, with a reference each.
  std::vector<platform::io_service_t> interfaceEntries(
      platform::io_service_t device, const platform::IOUSBFindInterfaceRequest& request);
  // The first one of the class; 0 when there is none.
  platform::io_service_t interfaceEntry(platform::io_service_t device, std::uint16_t wantedClass);
  std::unique_ptr<platform::UsbInterfaceObject> interfaceObject(platform::io_service_t device,
                                                                std::uint16_t wantedClass);
  // Opened, and with its event source on the run loop.
  std::unique_ptr<platform::UsbInterfaceObject> openInterface(platform::io_service_t device,
                                                              std::uint16_t wantedClass);
  void addEventSource(platform::UsbInterfaceObject& interface);

  // The pipe of that direction.
  static std::uint8_t pipe(platform::UsbInterfaceObject& interface,
                           platform::UsbDirection direction);

  // Start a transfer. The bytes, and the recorder, must live until it ends.
  platform::IOReturn startWrite(platform::UsbInterfaceObject& interface, const std::string& bytes,
                                TransferRecorder& recorder, std::uint32_t timeout = 5000);
  platform::IOReturn startRead(platform::UsbInterfaceObject& interface, std::string& bytes,
                               TransferRecorder& recorder, std::uint32_t timeout = 5000);

  // Waits for the end of `recorder`'s transfer.
  TransferEnd await(const TransferRecorder& recorder);

  // Start a transfer and wait for its end, which must not come within the start. A transfer that
  // cannot be started ends with the result of that.
  TransferEnd write(platform::UsbInterfaceObject& interface, const std::string& bytes,
                    std::uint32_t timeout = 5000);
  TransferEnd read(platform::UsbInterfaceObject& interface, std::string& bytes, std::size_t size,
                   std::uint32_t timeout = 5000);

 private:
  TransferEnd endOf(platform::IOReturn started, const TransferRecorder& recorder);

  platform::UsbRegistry& mRegistry;
  platform::RunLoop& mRunLoop;
  RunUntil mRunUntil;
};

// What the host says first, what it asks then, and what a printer with serial number VP000001
// answers, in two packets: the first 16 bytes, and the rest.
extern const std::string kStatusOff;
extern const std::string kIdRequest;
extern const std::string kIdAnswer;
