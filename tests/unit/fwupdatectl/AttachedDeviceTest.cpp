// Which of the attached printers is the one that is to be updated: it, or none.
#include <gtest/gtest.h>

#include "AttachedDevice.h"
#include "FakeUsbRegistry.h"
#include "JsonLines.h"
#include "platform/Platform.h"

namespace {

class AttachedDeviceTest : public testing::Test {
 protected:
  // As the process of a download gets it.
  static Target printer(const std::string& serial, const std::string& name = "Veltra KX350T") {
    const Target target{Target::Connection::Usb, name, serial, ""};
    return targetFromJson(nlohmann::ordered_json::parse(toJson(target).dump(-1, ' ', true)));
  }

  void expectFound(const Target& target) {
    platform::FailureCause whyNot;
    const auto found = attachedDevice(target, whyNot);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->getSerialNum(), target.serial);
    EXPECT_EQ(found->getManufacturer() + " " + found->getProduct(), target.name);
    EXPECT_EQ(whyNot.cause, nullptr);
  }

  void expectNone(const Target& target, const std::string& cause, const std::string& nextStep) {
    platform::FailureCause whyNot;
    EXPECT_FALSE(attachedDevice(target, whyNot));
    ASSERT_NE(whyNot.cause, nullptr);
    EXPECT_EQ(whyNot.cause, cause);
    EXPECT_EQ(whyNot.nextStep, nextStep);
  }

  void expectUnclear(const Target& target) {
    expectNone(target, "Another attached printer cannot be told apart from this one.",
               "Unplug the other one, then try again.");
  }

  static FakeUsbDevice makeOf(const std::string& manufacturer, const std::string& serial) {
    FakeUsbDevice device;
    return device.with("USB Vendor Name", manufacturer)
        .with("USB Product Name", "KX350T")
        .with("USB Serial Number", serial);
  }

  FakeUsbRegistry registry;
  platform::PlatformScope scope{{.usb = &registry}};
};

TEST_F(AttachedDeviceTest, IsTheOneOfTheSerialNumber) {
  registry.attach(fakePrinter("VX0001"));
  registry.attach(fakePrinter("VX0002"));
  registry.attach(fakePrinter("VX00021"));
  expectFound(printer("VX0002"));
}

TEST_F(AttachedDeviceTest, HasLeft) {
  registry.attach(fakePrinter("VX0001"));
  expectNone(printer("VX0002"), "The printer is no longer attached.",
             "Plug it in and switch it on, then try again.");
}

TEST_F(AttachedDeviceTest, OneWithoutASerialNumberIsNoOther) {
  registry.attach(fakePrinter("VX0001"));
  expectNone(printer(""), "The printer is no longer attached.",
             "Plug it in and switch it on, then try again.");
  registry.attach(fakePrinter(""));
  expectFound(printer(""));
}

TEST_F(AttachedDeviceTest, NoneOfTwoThatAreTheSame) {
  registry.attach(fakePrinter("VX0001"));
  const auto other = registry.attach(fakePrinter("VX0001"));
  expectUnclear(printer("VX0001"));
  registry.detach(other);
  expectFound(printer("VX0001"));
}

TEST_F(AttachedDeviceTest, NoneOfTwoWithoutASerialNumber) {
  registry.attach(fakePrinter(""));
  registry.attach(fakePrinter(""));
  expectUnclear(printer(""));
}

TEST_F(AttachedDeviceTest, TheNameTellsThoseOfOneSerialNumberApart) {
  registry.attach(makeOf("Other", "1"));
  registry.attach(makeOf("Veltra", "1"));
  expectFound(printer("1"));
  expectFound(printer("1", "Other KX350T"));
}

TEST_F(AttachedDeviceTest, SerialNumberMayBeAnyText) {
  std::string emoji;
  for (int i = 0; i < 63; ++i) emoji += "\xF0\x9F\x98\x80";
  for (const std::string& serial : {std::string("\x01\x1B[31m\x7F\"\\"), emoji}) {
    registry.attach(fakePrinter(serial));
    registry.attach(fakePrinter(serial + "'"));
    expectFound(printer(serial));
  }
}

}  // namespace
