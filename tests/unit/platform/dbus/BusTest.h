// A system bus and a session bus for a test alone, and a run loop whose clock is turned by hand.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "BusServices.h"
#include "FakeRunLoop.h"
#include "PrivateBus.h"

class BusTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  // What a service tells next, while the loop turns.
  std::string news() {
    return runLoop.runUntil([&] { return services->hasNews(); }) ? services->news() : "no news";
  }

  void offer(PrivateBus::Kind bus, std::vector<std::string> names) {
    services.emplace(bus, std::move(names));
  }

  PrivateBus systemBus{PrivateBus::Kind::System};
  PrivateBus sessionBus{PrivateBus::Kind::Session};
  FakeRunLoop runLoop;
  std::optional<BusServices> services;
};
