// A platform with a USB registry and a run loop that the tests turn by hand. Whatever a test does,
// at its end all references are given back and every scripted answer was asked for.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "AsyncIoNotifier.h"
#include "FakeRunLoop.h"
#include "FakeUsbRegistry.h"
#include "IoKitException.h"
#include "LogRecorder.h"

// Keeps what it is told.
class RecordingNotifier : public AsyncIoNotifier {
 public:
  void complete() override { mTold.push_back("complete"); }
  void failed(const std::string& message) override { mTold.push_back("failed: " + message); }

  const std::vector<std::string>& told() const { return mTold; }

 private:
  std::vector<std::string> mTold;
};

// A printer that the records of the registry name by its serial number.
inline FakeUsbDevice labelled(const std::string& serialNumber) {
  FakeUsbDevice device = fakePrinter(serialNumber);
  device.label = serialNumber;
  return device;
}

class UsbTest : public testing::Test {
 protected:
  ~UsbTest() override { EXPECT_THAT(mUsb.problems(), testing::ElementsAre()); }

  // The calls so far that begin with one of these, in their order: what one layer does itself,
  // without what the layers below it do on the way.
  std::vector<std::string> takeCallsOf(const std::vector<std::string>& beginnings) {
    std::vector<std::string> calls = mUsb.takeCalls();
    std::erase_if(calls, [&](const std::string& call) {
      return std::ranges::none_of(
          beginnings, [&](const std::string& wanted) { return call.starts_with(wanted); });
    });
    return calls;
  }

  // The text of the exception that `action` throws, which must be an `Exception`.
  template <typename Exception, typename Action>
  static std::string thrown(Action action) {
    try {
      action();
    } catch (const Exception& e) {
      return e.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
  }

  FakeRunLoop mLoop;
  FakeUsbRegistry mUsb;
  LogRecorder mPlatform{{.runLoop = &mLoop, .usb = &mUsb}};
};
