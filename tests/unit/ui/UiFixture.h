// What tests of sheets, commands and shell share: the doubles, and the texts of failures.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "BrokenNetwork.h"
#include "DesktopDoubles.h"
#include "platform/Data.h"

using Lines = std::vector<std::string>;
using Entries = std::vector<LogEntry>;

class UiFixture : public testing::Test {
 protected:
  UiFixture() { doubles.log.statuses().define(-50, "paramErr", "bad parameter"); }
  ~UiFixture() override { EXPECT_EQ(doubles.usb.problems(), Lines{}); }

  static platform::Text text(const std::string& utf8) { return platform::Text::fromUtf8(utf8); }

  // As a message looks that carries the status -50.
  static std::string withStatus(const std::string& message) {
    return message + " <status=-50 => paramErr; desc: bad parameter>";
  }

  template <typename Action>
  static void expectRuntimeError(const std::string& message, Action action) {
    try {
      action();
      ADD_FAILURE() << "nothing thrown: " << message;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), message);
    }
  }

  static platform::Data ipv4Record() {
    return platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0});
  }

  CallScript& script() { return doubles.toolkit.script(); }
  FakeScreen& screen() { return doubles.screen(); }

  BrokenNetwork network;
  DesktopDoubles doubles{&network};
};
