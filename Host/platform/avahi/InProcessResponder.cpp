#include "platform/avahi/InProcessResponder.h"

#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/lookup.h>

#include <utility>

#include "platform/avahi/AvahiQueries.h"
#include "platform/avahi/Conversions.h"

namespace platform::avahi {
namespace {

struct CoreApi {
  using Peer = AvahiServer;
  using Browser = AvahiSServiceBrowser;
  using Resolver = AvahiSServiceResolver;
  static constexpr auto newBrowser = avahi_s_service_browser_new;
  static constexpr auto freeBrowser = avahi_s_service_browser_free;
  static constexpr auto newResolver = avahi_s_service_resolver_new;
  static constexpr auto freeResolver = avahi_s_service_resolver_free;
  static constexpr auto txtOf = txtRecord;
};

class CoreResponder : public Responder {
 public:
  explicit CoreResponder(const AvahiPollAdapter& poll) {
    // It writes to standard error otherwise, which belongs to the program's own log.
    avahi_set_log_function([](AvahiLogLevel, const char*) {});

    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.disable_publishing = 1;
    config.publish_addresses = 0;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
    config.publish_domain = 0;
    config.enable_wide_area = 0;
    mServer = avahi_server_new(poll.api(), &config, nullptr, nullptr, nullptr);
    avahi_server_config_free(&config);
  }
  ~CoreResponder() override {
    if (mServer != nullptr) avahi_server_free(mServer);
  }
  CoreResponder(const CoreResponder&) = delete;
  CoreResponder& operator=(const CoreResponder&) = delete;

  bool started() const { return mServer != nullptr; }

  std::unique_ptr<Query> browse(const std::string& type, const std::string& domain,
                                BrowseListener& listener) override {
    return ask<BrowseQuery<CoreApi>>(mServer, type, domain, listener);
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, Place place,
                                 AvahiProtocol addressFamily, ResolveCallback callback) override {
    return ask<ResolveQuery<CoreApi>>(mServer, service, place, addressFamily, std::move(callback));
  }

 private:
  AvahiServer* mServer;
};

}  // namespace

std::unique_ptr<Responder> startInProcessResponder(const AvahiPollAdapter& poll) {
  auto responder = std::make_unique<CoreResponder>(poll);
  return responder->started() ? std::move(responder) : nullptr;
}

}  // namespace platform::avahi
