#include "platform/avahi/AvahiServiceDiscovery.h"

#include "platform/avahi/AvahiBrowser.h"

namespace {

class AvahiServiceDiscovery : public platform::ServiceDiscovery {
 public:
  explicit AvahiServiceDiscovery(platform::RunLoop& runLoop) : mRunLoop(runLoop) {}

  std::unique_ptr<platform::NetServiceBrowser> createBrowser(
      platform::NetServiceBrowser::Callback callback, void* info) override {
    return std::make_unique<platform::avahi::AvahiBrowser>(mRunLoop, callback, info);
  }

 private:
  platform::RunLoop& mRunLoop;
};

}  // namespace

std::unique_ptr<platform::ServiceDiscovery> makeAvahiServiceDiscovery(platform::RunLoop& runLoop) {
  return std::make_unique<AvahiServiceDiscovery>(runLoop);
}
