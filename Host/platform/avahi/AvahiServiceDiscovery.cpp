#include "platform/avahi/AvahiServiceDiscovery.h"

#include "platform/avahi/AvahiBrowser.h"

namespace platform {
namespace {

class AvahiServiceDiscovery : public ServiceDiscovery {
 public:
  explicit AvahiServiceDiscovery(RunLoop& runLoop) : mRunLoop(runLoop) {}

  std::unique_ptr<NetServiceBrowser> createBrowser(NetServiceBrowser::Callback callback,
                                                   void* info) override {
    return std::make_unique<avahi::AvahiBrowser>(mRunLoop, callback, info);
  }

 private:
  RunLoop& mRunLoop;
};

}  // namespace

std::unique_ptr<ServiceDiscovery> makeAvahiServiceDiscovery(RunLoop& runLoop) {
  return std::make_unique<AvahiServiceDiscovery>(runLoop);
}

}  // namespace platform
