// The fixture of the tests of the USB registry on a real bus: the registry and its run loop.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "PollRunLoop.h"
#include "UsbHost.h"
#include "platform/libusb/LibusbRegistry.h"

class UsbHostTest : public testing::Test {
 protected:
  PollRunLoop mLoop;
  std::vector<std::string> mErrors;  // that the registry logs
  std::function<void(const std::string&)> mLogError = [this](const std::string& entry) {
    mErrors.push_back(entry);
  };
  std::unique_ptr<platform::LibusbRegistry> mRegistry = platform::makeLibusbRegistry(
      mLoop, [this](const std::string& entry) { mLogError(entry); }, std::chrono::minutes(1));
  UsbHost mHost{*mRegistry, mLoop,
                [this](const std::function<bool()>& done) { return mLoop.runUntil(done); }};
};
