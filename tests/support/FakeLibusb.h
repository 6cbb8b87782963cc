// libusb as the tests of this folder want it: its functions are defined again in the test program,
// and answer from here. What a device is, the library leaves open.
#pragma once

#include <libusb-1.0/libusb.h>

#include <cstdint>
#include <vector>

struct libusb_device {
  std::uint8_t bus = 1;
  std::vector<std::uint8_t> ports{2};  // on each hub on the way; none for a root hub
  std::uint8_t address = 5;
  libusb_device_descriptor descriptor{};
  libusb_config_descriptor active{};
  int activeResult = LIBUSB_SUCCESS;
};

// What a test changes holds until the end of the test.
struct FakeLibusb {
  FakeLibusb();
  ~FakeLibusb();
  FakeLibusb(const FakeLibusb&) = delete;
  FakeLibusb& operator=(const FakeLibusb&) = delete;

  int initResult = LIBUSB_SUCCESS;
  int hotplugResult = LIBUSB_SUCCESS;
  bool hasPollfds = true;

  bool threadsTakeSignals = true;  // those that were started with it
};
