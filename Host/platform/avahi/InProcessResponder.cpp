#include "platform/avahi/InProcessResponder.h"

#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/lookup.h>

#include <utility>

#include "platform/avahi/QueryTarget.h"

namespace platform::avahi {
namespace {

class CoreBrowse : public Responder::Query {
 public:
  CoreBrowse(AvahiServer* server, const std::string& type, const char* domain,
             BrowseListener& listener)
      : mBrowser(avahi_s_service_browser_new(server, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                             type.c_str(), domain, AvahiLookupFlags{}, told,
                                             &listener)) {}
  ~CoreBrowse() override {
    if (mBrowser != nullptr) avahi_s_service_browser_free(mBrowser);
  }
  CoreBrowse(const CoreBrowse&) = delete;
  CoreBrowse& operator=(const CoreBrowse&) = delete;

  bool started() const { return mBrowser != nullptr; }

 private:
  static void told(AvahiSServiceBrowser*, AvahiIfIndex interface, AvahiProtocol protocol,
                   AvahiBrowserEvent event, const char* name, const char* type, const char* domain,
                   AvahiLookupResultFlags, void* listener) {
    tellBrowseEvent(*static_cast<BrowseListener*>(listener), event,
                    {{interface, protocol}, name, type, domain});
  }

  AvahiSServiceBrowser* mBrowser;
};

class CoreResolve : public Responder::Query {
 public:
  CoreResolve(AvahiServer* server, const ServiceName& service, Place place,
              AvahiProtocol addressFamily, Responder::ResolveCallback callback)
      : mTarget(std::move(callback)),
        mResolver(avahi_s_service_resolver_new(
            server, place.interface, place.protocol, service.name.c_str(), service.type.c_str(),
            service.domain.c_str(), addressFamily, AvahiLookupFlags{}, told, &mTarget)) {}
  ~CoreResolve() override {
    if (mResolver != nullptr) avahi_s_service_resolver_free(mResolver);
  }
  CoreResolve(const CoreResolve&) = delete;
  CoreResolve& operator=(const CoreResolve&) = delete;

  bool started() const { return mResolver != nullptr; }

 private:
  static void told(AvahiSServiceResolver*, AvahiIfIndex interface, AvahiProtocol,
                   AvahiResolverEvent event, const char*, const char*, const char*, const char*,
                   const AvahiAddress* address, std::uint16_t port, AvahiStringList* txt,
                   AvahiLookupResultFlags, void* target) {
    static_cast<ResolveTarget*>(target)->tell(event, interface, address, port, txt);
  }

  ResolveTarget mTarget;
  AvahiSServiceResolver* mResolver;
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
    auto query = std::make_unique<CoreBrowse>(mServer, type,
                                              domain.empty() ? nullptr : domain.c_str(), listener);
    return query->started() ? std::move(query) : nullptr;
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, Place place,
                                 AvahiProtocol addressFamily, ResolveCallback callback) override {
    auto query =
        std::make_unique<CoreResolve>(mServer, service, place, addressFamily, std::move(callback));
    return query->started() ? std::move(query) : nullptr;
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
