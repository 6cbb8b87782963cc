// The real thing on a private network of two links, with printers on the other machine, and on the
// run loops of the two programs.
#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <utility>

#include "Announcement.h"
#include "PrivateNetwork.h"
#include "RunLoopWorld.h"
#include "ServiceDiscoveryContract.h"
#include "platform/avahi/AvahiServiceDiscovery.h"

namespace {

class AvahiDiscoveryWorld : public DiscoveryWorld {
 public:
  explicit AvahiDiscoveryWorld(std::unique_ptr<RunLoopWorld> loop) : mLoop(std::move(loop)) {}

  platform::ServiceDiscovery& discovery() override { return *mDiscovery; }

  // A name that is announced a second time has to be free first.
  void announce(const AnnouncedService& service) override {
    std::vector<std::string> arguments{"--type", service.type, "--port",
                                       std::to_string(service.port)};
    if (!service.answers) arguments.emplace_back("--no-address");
    arguments.push_back(service.name);
    for (const std::string& string : service.txt) arguments.push_back(escaped(string));
    const auto announced =
        mAnnouncements.insert_or_assign(service.name, std::make_unique<Announcement>(arguments));
    announced.first->second->waitUntilEstablished();
  }

  void withdraw(const std::string& name) override { mAnnouncements.erase(name); }

  bool runUntil(const std::function<bool()>& done) override { return mLoop->runUntil(done); }

  void runFor(std::chrono::milliseconds time) override { mLoop->runFor(time); }

 private:
  static std::string escaped(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
      const auto value = static_cast<unsigned char>(byte);
      text += {'\\', 'x', kDigits[value >> 4], kDigits[value & 15]};
    }
    return text;
  }

  std::unique_ptr<RunLoopWorld> mLoop;
  std::unique_ptr<platform::ServiceDiscovery> mDiscovery =
      platform::makeAvahiServiceDiscovery(mLoop->runLoop());
  std::map<std::string, std::unique_ptr<Announcement>> mAnnouncements;
};

class DaemonWorld : public AvahiDiscoveryWorld {
 public:
  explicit DaemonWorld(std::unique_ptr<RunLoopWorld> loop) : AvahiDiscoveryWorld(std::move(loop)) {
    privatenetwork::startDaemon({"[publish]", "disable-publishing=yes"});
  }
  ~DaemonWorld() override { privatenetwork::stopDaemon(); }
  DaemonWorld(const DaemonWorld&) = delete;
  DaemonWorld& operator=(const DaemonWorld&) = delete;
};

}  // namespace

std::vector<DiscoveryImplementation> discoveryImplementations() {
  std::vector<DiscoveryImplementation> all;
  for (const RunLoopImplementation& loop : productRunLoops()) {
    all.push_back({"DaemonOn" + loop.name,
                   [make = loop.make] { return std::make_unique<DaemonWorld>(make()); }});
    // The network has a bus, and nobody on it.
    all.push_back({"InProcessOn" + loop.name,
                   [make = loop.make] { return std::make_unique<AvahiDiscoveryWorld>(make()); }});
  }
  return all;
}

int main(int argc, char** argv) {
  privatenetwork::enter(argc, argv, {"--no-daemon", "--links", "2"});
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
