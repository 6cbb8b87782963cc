#include <cstdint>
#include <utility>

#include "FakeRunLoop.h"
#include "FakeServiceDiscovery.h"
#include "ServiceDiscoveryContract.h"
#include "platform/Platform.h"

namespace {

class FakeDiscoveryWorld : public DiscoveryWorld {
 public:
  platform::ServiceDiscovery& discovery() override { return mDiscovery; }

  void announce(const AnnouncedService& service) override {
    const auto high = static_cast<std::uint8_t>(service.port >> 8);
    const auto low = static_cast<std::uint8_t>(service.port & 0xFF);
    const platform::Data address =
        platform::makeData({16, 2, high, low, 10, 91, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0});
    FakeNetService::Announcement announcement;
    announcement.name = service.name;
    announcement.type = service.type;
    announcement.txt = txtRecord(service.txt);
    announcement.addresses = std::make_shared<const std::vector<platform::Data>>(1, address);
    announcement.answers = service.answers;
    mDiscovery.announce(std::move(announcement));
  }

  void withdraw(const std::string& name) override { mDiscovery.withdraw(name); }

  bool runUntil(const std::function<bool()>& done) override { return mRunLoop.runUntil(done); }

  void runFor(std::chrono::milliseconds time) override {
    mRunLoop.runAllLater();
    mRunLoop.advance(time);
    mRunLoop.runAllLater();
  }

 private:
  static platform::Data txtRecord(const std::vector<std::string>& strings) {
    std::vector<std::uint8_t> bytes;
    for (const std::string& string : strings) {
      bytes.push_back(static_cast<std::uint8_t>(string.size()));
      bytes.insert(bytes.end(), string.begin(), string.end());
    }
    if (bytes.empty()) bytes.push_back(0);
    return platform::makeData(std::move(bytes));
  }

  FakeRunLoop mRunLoop;
  platform::PlatformScope mScope{{.runLoop = &mRunLoop}};
  FakeServiceDiscovery mDiscovery;
};

}  // namespace

std::vector<DiscoveryImplementation> discoveryImplementations() {
  return {{"Fake", [] { return std::unique_ptr<DiscoveryWorld>(new FakeDiscoveryWorld); }}};
}
