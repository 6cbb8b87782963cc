#include "platform/avahi/AvahiServiceDiscovery.h"

#include <string>

#include "platform/avahi/AvahiBrowser.h"

namespace platform {
namespace {

class AvahiServiceDiscovery : public ServiceDiscovery {
 public:
  AvahiServiceDiscovery(RunLoop& runLoop, const Text& askedFirst, DiscoveryStatus* status)
      : mRunLoop(runLoop), mAskedFirst(askedFirst.utf8()), mStatus(status) {}

  std::unique_ptr<NetServiceBrowser> createBrowser(NetServiceBrowser::Callback callback,
                                                   void* info) override {
    return std::make_unique<AvahiBrowser>(mRunLoop, mAskedFirst, callback, info, mStatus);
  }

 private:
  RunLoop& mRunLoop;
  const std::string mAskedFirst;
  DiscoveryStatus* const mStatus;
};

}  // namespace

std::unique_ptr<ServiceDiscovery> makeAvahiServiceDiscovery(RunLoop& runLoop,
                                                            const Text& askedFirst,
                                                            DiscoveryStatus* status) {
  return std::make_unique<AvahiServiceDiscovery>(runLoop, askedFirst, status);
}

}  // namespace platform
