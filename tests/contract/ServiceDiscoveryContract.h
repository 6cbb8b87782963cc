// The tests that hold for every service discovery are built into several programs: one for the
// double, and one that runs on a private network. Each says which implementations it has.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "DiscoveryWorld.h"

struct DiscoveryImplementation {
  std::string name;
  std::function<std::unique_ptr<DiscoveryWorld>()> make;
};

std::vector<DiscoveryImplementation> discoveryImplementations();

inline void PrintTo(const DiscoveryImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

inline std::string nameOf(const testing::TestParamInfo<DiscoveryImplementation>& info) {
  return info.param.name;
}

class ServiceDiscoveryContract : public testing::TestWithParam<DiscoveryImplementation> {
 protected:
  // Longer than anything takes that is still to be told.
  void settle() { mWorld->runFor(std::chrono::milliseconds(1500)); }

  std::unique_ptr<DiscoveryWorld> mWorld = GetParam().make();
};
