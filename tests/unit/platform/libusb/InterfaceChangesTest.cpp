#include <fcntl.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "FakeRunLoop.h"
#include "platform/libusb/InterfaceChanges.h"

namespace {

using namespace std::string_literals;
using platform::isInterfaceChange;

// Looks at the descriptor when nobody watches it any more.
class LookingRunLoop : public FakeRunLoop {
 public:
  std::unique_ptr<Watch> watch(int descriptor, Interest, std::function<void()>) override {
    return std::make_unique<Looking>(descriptor, mWasOpen);
  }

  bool mWasOpen = false;

 private:
  class Looking : public Watch {
   public:
    Looking(int descriptor, bool& wasOpen) : mDescriptor(descriptor), mWasOpen(wasOpen) {}
    ~Looking() override { mWasOpen = fcntl(mDescriptor, F_GETFD) >= 0; }
    void setEnabled(bool) override {}

   private:
    const int mDescriptor;
    bool& mWasOpen;
  };
};

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

TEST(InterfaceChangesTest, SocketIsClosedWhenItIsWatchedNoMore) {
  LookingRunLoop runLoop;
  {
    const platform::InterfaceChanges changes(runLoop, [] {});
  }
  EXPECT_TRUE(runLoop.mWasOpen);
}

}  // namespace
