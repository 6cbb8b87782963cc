// The tests that hold for every USB registry are built into two programs: one for the double, and
// one that runs in a virtual machine, with a bus. Each says which implementations it has.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "UsbHost.h"
#include "UsbWorld.h"

struct UsbImplementation {
  std::string name;
  std::function<std::unique_ptr<UsbWorld>()> make;
};

std::vector<UsbImplementation> usbImplementations();

inline void PrintTo(const UsbImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

inline std::string implementationName(const testing::TestParamInfo<UsbImplementation>& info) {
  return info.param.name;
}

class UsbContract : public testing::TestWithParam<UsbImplementation> {
 protected:
  platform::UsbRegistry& registry() { return mWorld->registry(); }

  // Plugs a printer in and waits for it; its entry, with a reference.
  platform::io_service_t plugIn(const PrinterOnUsb& printer = {}) {
    mWorld->plugIn(printer);
    return mHost.awaitPrinter(printer.serial);
  }

  // Longer than anything takes that is still to be told.
  void settle() { mWorld->runFor(std::chrono::milliseconds(50)); }

  std::unique_ptr<UsbWorld> mWorld = GetParam().make();
  UsbHost mHost{mWorld->registry(), mWorld->runLoop(),
                [this](const std::function<bool()>& done) { return mWorld->runUntil(done); }};
};
