#include "platform/avahi/InProcessResponder.h"

#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/lookup.h>

#include <utility>

#include "platform/avahi/Conversions.h"

namespace platform {
namespace {

// Of each link and protocol. A printer has five; with the library's own limit, of a thousand
// printers 181 could not be found.
constexpr unsigned kMostRecords = 16384;

// A question to the stack as an object.
template <typename Object, void (*free)(Object*)>
class CoreQuery : public Responder::Query {
 public:
  ~CoreQuery() override {
    if (mObject != nullptr) free(mObject);
  }
  CoreQuery(const CoreQuery&) = delete;
  CoreQuery& operator=(const CoreQuery&) = delete;

  bool started() const { return mObject != nullptr; }

 protected:
  CoreQuery() = default;

  Object* mObject = nullptr;
};

class CoreBrowseQuery final : public CoreQuery<AvahiSServiceBrowser, avahi_s_service_browser_free> {
 public:
  CoreBrowseQuery(AvahiServer* server, const std::string& type, const std::string& domain,
                  BrowseListener& listener) {
    mObject = avahi_s_service_browser_new(server, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, type.c_str(),
                                          domain.c_str(), AvahiLookupFlags{}, told, &listener);
  }

 private:
  static void told(AvahiSServiceBrowser*, AvahiIfIndex interface, AvahiProtocol protocol,
                   AvahiBrowserEvent event, const char* name, const char* type, const char* domain,
                   AvahiLookupResultFlags, void* userData) {
    auto& listener = *static_cast<BrowseListener*>(userData);
    switch (event) {
      case AVAHI_BROWSER_NEW:
        return listener.appeared({name, type, domain}, {interface, protocol});
      case AVAHI_BROWSER_REMOVE:
        return listener.disappeared({name, type, domain}, {interface, protocol});
      case AVAHI_BROWSER_ALL_FOR_NOW:
        return listener.allForNow();
      case AVAHI_BROWSER_FAILURE:
        return listener.browsingFailed();
      case AVAHI_BROWSER_CACHE_EXHAUSTED:
        return;
    }
  }
};

class CoreDomainQuery final : public CoreQuery<AvahiSDomainBrowser, avahi_s_domain_browser_free> {
 public:
  CoreDomainQuery(AvahiServer* server, DomainListener& listener) {
    mObject = avahi_s_domain_browser_new(server, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, nullptr,
                                         AVAHI_DOMAIN_BROWSER_BROWSE, AvahiLookupFlags{}, told,
                                         &listener);
  }

 private:
  static void told(AvahiSDomainBrowser*, AvahiIfIndex, AvahiProtocol, AvahiBrowserEvent event,
                   const char* domain, AvahiLookupResultFlags, void* userData) {
    auto& listener = *static_cast<DomainListener*>(userData);
    if (event == AVAHI_BROWSER_NEW) listener.domainAppeared(domain);
    if (event == AVAHI_BROWSER_REMOVE) listener.domainDisappeared(domain);
  }
};

// The stack takes every question; what it cannot answer it says later.
class CoreResolveQuery final
    : public CoreQuery<AvahiSServiceResolver, avahi_s_service_resolver_free> {
 public:
  CoreResolveQuery(AvahiServer* server, const ServiceName& service, const Question& question,
                   Responder::ResolveCallback callback)
      : mWantsTxt(question.wantsTxt), mCallback(std::move(callback)) {
    mObject = avahi_s_service_resolver_new(
        server, question.place.interface, question.place.protocol, service.name.c_str(),
        service.type.c_str(), service.domain.c_str(), question.addressFamily,
        mWantsTxt ? AvahiLookupFlags{} : AVAHI_LOOKUP_NO_TXT, told, this);
    if (started()) mCallback(Responder::News::Accepted, {});
  }

 private:
  static void told(AvahiSServiceResolver*, AvahiIfIndex interface, AvahiProtocol,
                   AvahiResolverEvent event, const char*, const char*, const char*, const char*,
                   const AvahiAddress* address, std::uint16_t port, AvahiStringList* txt,
                   AvahiLookupResultFlags, void* userData) {
    auto& self = *static_cast<CoreResolveQuery*>(userData);
    if (std::exchange(self.mTold, true)) return;
    if (event == AVAHI_RESOLVER_FOUND && address != nullptr) {
      self.mCallback(Responder::News::Answered, {addressRecord(*address, port, interface),
                                                 self.mWantsTxt ? txtRecord(txt) : nullptr});
    } else {
      self.mCallback(Responder::News::Refused, {});
    }
  }

  const bool mWantsTxt;
  const Responder::ResolveCallback mCallback;
  bool mTold = false;
};

// A question that has been asked; null when it could not be.
template <typename Query, typename... Arguments>
std::unique_ptr<Responder::Query> ask(Arguments&&... arguments) {
  auto query = std::make_unique<Query>(std::forward<Arguments>(arguments)...);
  return query->started() ? std::move(query) : nullptr;
}

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
    config.n_cache_entries_max = kMostRecords;
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
    return ask<CoreBrowseQuery>(mServer, type, domain, listener);
  }

  std::unique_ptr<Query> browseDomains(DomainListener& listener) override {
    return ask<CoreDomainQuery>(mServer, listener);
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, const Question& question,
                                 ResolveCallback callback) override {
    return ask<CoreResolveQuery>(mServer, service, question, std::move(callback));
  }

  std::string defaultDomain() const override { return avahi_server_get_domain_name(mServer); }

 private:
  AvahiServer* mServer;
};

}  // namespace

std::unique_ptr<Responder> startInProcessResponder(const AvahiPollAdapter& poll) {
  auto responder = std::make_unique<CoreResponder>(poll);
  return responder->started() ? std::move(responder) : nullptr;
}

}  // namespace platform
