// A browser on the private network that resolves what it finds, and printers on the other machine.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Announcement.h"
#include "BrowserRecorder.h"
#include "PollRunLoop.h"
#include "PrivateNetwork.h"
#include "platform/avahi/AvahiServiceDiscovery.h"

// Names the parameter of tests that run with the daemon and without.
inline std::string stackName(const testing::TestParamInfo<bool>& withDaemon) {
  return withDaemon.param ? "Daemon" : "InProcess";
}

class DiscoveryTest : public testing::Test {
 protected:
  void TearDown() override {
    recorder.reset();
    privatenetwork::restore();
  }

  using Lines = std::vector<std::string>;
  using Bytes = std::vector<std::uint8_t>;

  static void startDaemon() {
    privatenetwork::startDaemon({"[publish]", "disable-publishing=yes"});
  }

  // SIGSTOP and SIGCONT to "avahi-daemon" or "bus".
  static void signal(const std::string& process, const std::string& signal) {
    ASSERT_EQ(
        privatenetwork::run(
            {"sh", "-c", "kill -" + signal + " $(cat /run/private-network/" + process + ".pid)"}),
        0);
  }

  // Returns when it is announced.
  static std::unique_ptr<Announcement> announce(
      const std::vector<std::string>& arguments,
      Announcement::Machine machine = Announcement::Machine::Peer) {
    auto announcement = std::make_unique<Announcement>(arguments, machine);
    announcement->waitUntilEstablished();
    return announcement;
  }

  void search() {
    recorder.emplace(*discovery);
    recorder->resolves = true;
    ASSERT_TRUE(recorder->search());
  }

  bool waitFor(const std::string& line,
               std::chrono::milliseconds atMost = std::chrono::seconds(20)) {
    return runLoop.runUntil([&] { return recorder->wasTold(line); }, atMost);
  }

  // Searches, and waits until the printer is resolved.
  void find(const std::string& name) {
    search();
    ASSERT_TRUE(waitFor("resolved " + name));
    recorder->told.clear();
  }

  // As long as it takes until a printer that a new responder does not tell of is called gone.
  void waitForCarryOver() { runLoop.runFor(std::chrono::milliseconds(4500)); }

  const Lines& told() const { return recorder->told; }

  PollRunLoop runLoop;
  platform::DiscoveryStatus status;
  std::unique_ptr<platform::ServiceDiscovery> discovery =
      platform::makeAvahiServiceDiscovery(runLoop, {}, &status);
  std::optional<BrowserRecorder> recorder;
};
