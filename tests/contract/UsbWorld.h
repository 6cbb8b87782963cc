// A USB bus, for tests that hold for every USB registry: the one on libusb with a printer in
// software on the kernel's bus, and the double. Tests say what is plugged in; the program's side is
// the registry.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/RunLoop.h"
#include "platform/UsbRegistry.h"

// The vendor's interface (class 255) comes first and says back what it hears, one short transfer
// for each. The printer's interface (class 7, subclass 1, protocol 2) listens, and answers
// kIdRequest with kIdAnswer.
struct PrinterOnUsb {
  enum class Fault {
    None,
    NoPrinterInterface,
    InPipeFirst,
    EmptyPackets,     // one before each packet of the answer
    StallsAtRequest,  // both pipes of the printer's interface, before it answers
    TakesOneMessage,  // and nothing after that
  };

  std::string serial = "VP000001";
  std::string manufacturer = "Veltra";
  std::string product = "KX350T";
  std::uint16_t vendorId = 0x3A71;
  std::uint16_t productId = 0x0C28;
  Fault fault = Fault::None;
};

class UsbWorld {
 public:
  virtual ~UsbWorld() = default;

  virtual platform::UsbRegistry& registry() = 0;
  virtual platform::RunLoop& runLoop() = 0;

  // It may take a moment until the registry knows of it.
  virtual void plugIn(const PrinterOnUsb& printer) = 0;
  virtual void unplug(const std::string& serial) = 0;

  // A device that nobody has authorized has no configuration; one that has a configuration can lose
  // it and get it again.
  virtual void plugInUnconfigured(const PrinterOnUsb& printer) = 0;
  virtual void setConfigured(const std::string& serial, bool isConfigured) = 0;

  // Another program takes the printer's interface for itself, or gives it back.
  virtual void claimElsewhere(const std::string& serial, bool isClaimed) = 0;

  // Waits, without turning the run loop, until the printer's interface has received that many
  // messages.
  virtual void awaitMessages(const std::string& serial, std::size_t count) = 0;

  // False when `done` does not hold in time.
  virtual bool runUntil(const std::function<bool()>& done) = 0;
  virtual void runFor(std::chrono::milliseconds time) = 0;
};
