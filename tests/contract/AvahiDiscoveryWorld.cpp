// The real thing on a private network of two links, with printers on the other machine.
#include <gmock/gmock.h>

#include <map>

#include "Announcement.h"
#include "PollRunLoop.h"
#include "PrivateNetwork.h"
#include "ServiceDiscoveryContract.h"
#include "platform/avahi/AvahiServiceDiscovery.h"

namespace {

class AvahiDiscoveryWorld : public DiscoveryWorld {
 public:
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

  bool runUntil(const std::function<bool()>& done) override { return mRunLoop.runUntil(done); }

  void runFor(std::chrono::milliseconds time) override { mRunLoop.runFor(time); }

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

  PollRunLoop mRunLoop;
  std::unique_ptr<platform::ServiceDiscovery> mDiscovery =
      platform::makeAvahiServiceDiscovery(mRunLoop);
  std::map<std::string, std::unique_ptr<Announcement>> mAnnouncements;
};

// The network has a bus, and nobody on it.
std::unique_ptr<DiscoveryWorld> makeInProcessWorld() {
  return std::make_unique<AvahiDiscoveryWorld>();
}

class DaemonWorld : public AvahiDiscoveryWorld {
 public:
  DaemonWorld() { privatenetwork::startDaemon({"[publish]", "disable-publishing=yes"}); }
  ~DaemonWorld() override { privatenetwork::stopDaemon(); }
  DaemonWorld(const DaemonWorld&) = delete;
  DaemonWorld& operator=(const DaemonWorld&) = delete;
};

std::unique_ptr<DiscoveryWorld> makeDaemonWorld() { return std::make_unique<DaemonWorld>(); }

}  // namespace

std::vector<DiscoveryImplementation> discoveryImplementations() {
  return {{"Daemon", makeDaemonWorld}, {"InProcess", makeInProcessWorld}};
}

int main(int argc, char** argv) {
  privatenetwork::enter(argc, argv, {"--no-daemon", "--links", "2"});
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
