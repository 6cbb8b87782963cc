// The fixture of the tests of the USB registry on a real bus: the registry and its run loop.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "PollRunLoop.h"
#include "UsbHost.h"
#include "platform/libusb/LibusbRegistry.h"

class UsbHostTest : public testing::Test {
 protected:
  PollRunLoop mLoop;
  std::unique_ptr<platform::UsbRegistry> mRegistry = platform::makeLibusbRegistry(mLoop);
  UsbHost mHost{*mRegistry, mLoop,
                [this](const std::function<bool()>& done) { return mLoop.runUntil(done); }};
};
