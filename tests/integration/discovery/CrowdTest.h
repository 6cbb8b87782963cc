// A browser in a building full of printers. All of the crowd's members are of our make here, so
// that they are called "Printer 0001" and so on.
#pragma once

#include <cstdio>

#include "Crowd.h"
#include "DiscoveryTest.h"

class CrowdTest : public DiscoveryTest {
 protected:
  // On both links.
  void gather(unsigned count, std::vector<std::string> orders = {}) {
    const std::string number = std::to_string(count);
    std::vector<std::string> arguments{"--count", number, "--ours", number,
                                       "--link",  "net0", "--link", "net1"};
    arguments.insert(arguments.end(), orders.begin(), orders.end());
    crowd.emplace(arguments);
  }

  static std::string printer(unsigned number) {
    char name[32];
    std::snprintf(name, sizeof name, "Printer %04u", number);
    return name;
  }

  bool waitForResolved(std::size_t count) {
    return runLoop.runUntil([&] { return recorder->firstAddress.size() >= count; }, kPatience);
  }

  bool waitUntilTold(const std::string& line, unsigned first, unsigned last) {
    return runLoop.runUntil(
        [&] {
          for (unsigned number = first; number <= last; ++number) {
            if (!recorder->wasTold(line + printer(number))) return false;
          }
          return true;
        },
        kPatience);
  }

  // Whether all of them have been resolved, and were told of once more often than of their removal.
  bool isThereNow(unsigned first, unsigned last) const {
    for (unsigned number = first; number <= last; ++number) {
      const std::string name = printer(number);
      if (recorder->count("added " + name) != recorder->count("removed " + name) + 1) return false;
      if (!recorder->firstAddress.contains(name)) return false;
    }
    return true;
  }

  // An IPv4 address of member `host` on either link, port 9100.
  static testing::Matcher<Bytes> isIPv4Of(unsigned host) {
    return testing::ElementsAre(16, 2, 0x23, 0x8C, 10, testing::AnyOf(100, 101), host >> 8,
                                host & 0xFF, 0, 0, 0, 0, 0, 0, 0, 0);
  }

  // Each has its IPv4 address, and was told of once.
  void expectEachListedOnce(unsigned first, unsigned last) {
    for (unsigned number = first; number <= last; ++number) {
      EXPECT_EQ(recorder->count("added " + printer(number)), 1u) << number;
      EXPECT_EQ(recorder->count("resolved " + printer(number)), 1u) << number;
      EXPECT_EQ(recorder->count("removed " + printer(number)), 0u) << number;
      EXPECT_THAT(recorder->firstAddress[printer(number)], isIPv4Of(number)) << number;
    }
  }

  static constexpr std::chrono::seconds kPatience{60};

  std::optional<Crowd> crowd;
};
