// What tests of records, list and view share: the doubles, devices and address records.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "BrokenNetwork.h"
#include "DesktopDoubles.h"
#include "NamedService.h"
#include "Printer.h"
#include "QuillUsbDevice.h"
#include "platform/Data.h"

struct DestroyPrinter {
  void operator()(Printer* printer) const { Printer::destroy(printer); }
};
using OwnedPrinter = std::unique_ptr<Printer, DestroyPrinter>;

class PrinterFixture : public testing::Test {
 protected:
  ~PrinterFixture() override { EXPECT_EQ(doubles.usb.problems(), std::vector<std::string>{}); }

  QuillUsbDevice plugIn(const FakeUsbDevice& device) {
    QuillUsbDevice handle;
    handle.init(doubles.usb.attach(device), 0);
    return handle;
  }

  static platform::Text text(const std::string& utf8) { return platform::Text::fromUtf8(utf8); }

  static platform::Data ipv4Record(std::uint8_t lastByte = 7) {
    return platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2, lastByte, 0, 0, 0, 0, 0, 0, 0, 0});
  }

  static platform::Data ipv6Record() {
    return platform::makeData({28,   30,   0x23, 0x8C,                 // length, family, port
                               0,    0,    0,    0,                    // flow
                               0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0,     // address
                               0,    0,    0,    0,    0, 0, 0, 0x42,  //
                               0,    0,    0,    0});                  // scope
  }

  BrokenNetwork network;
  DesktopDoubles doubles{&network};
};

// As the platform's strings are compared in tests: a null text is told from an empty one.
inline std::string shown(const platform::Text& text) {
  return text ? std::string(text.utf8()) : std::string("<null>");
}
