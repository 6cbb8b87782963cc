#include <gtest/gtest.h>

#include <string>

#include "platform/libusb/InterfaceChanges.h"

namespace {

using namespace std::string_literals;
using platform::isInterfaceChange;

// As the kernel sends them.
std::string message(const std::string& action, const std::string& type) {
  return action + "@/devices/platform/dummy_hcd.0/usb1/1-1/1-1:1.0\0ACTION="s + action +
         "\0DEVPATH=/devices/platform/dummy_hcd.0/usb1/1-1/1-1:1.0\0SUBSYSTEM=usb\0DEVTYPE="s +
         type + "\0PRODUCT=3a71/c28/100\0SEQNUM=2216\0"s;
}

TEST(InterfaceChangesTest, AnInterfaceThatComesOrGoesIsAChange) {
  EXPECT_TRUE(isInterfaceChange(message("add", "usb_interface")));
  EXPECT_TRUE(isInterfaceChange(message("remove", "usb_interface")));
}

TEST(InterfaceChangesTest, ADriverThatTakesItIsNone) {
  EXPECT_FALSE(isInterfaceChange(message("bind", "usb_interface")));
  EXPECT_FALSE(isInterfaceChange(message("unbind", "usb_interface")));
  EXPECT_FALSE(isInterfaceChange(message("change", "usb_interface")));
}

TEST(InterfaceChangesTest, WhatIsNoInterfaceIsNone) {
  EXPECT_FALSE(isInterfaceChange(message("add", "usb_device")));
  EXPECT_FALSE(isInterfaceChange(message("remove", "usb_interfaces")));
  EXPECT_FALSE(isInterfaceChange("add@/devices/virtual/net/net0\0ACTION=add\0SUBSYSTEM=net\0"s));
}

TEST(InterfaceChangesTest, MessagesMayBeCutOff) {
  const std::string whole = message("add", "usb_interface");
  const std::size_t end = whole.find("usb_interface") + 13;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(isInterfaceChange(whole.substr(0, length)), length >= end) << length;
  }
}

}  // namespace
