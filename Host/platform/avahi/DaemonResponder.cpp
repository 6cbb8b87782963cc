#include "platform/avahi/DaemonResponder.h"

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>

#include <utility>

#include "platform/avahi/QueryTarget.h"

namespace platform::avahi {
namespace {

class DaemonBrowse : public Responder::Query {
 public:
  DaemonBrowse(AvahiClient* client, const std::string& type, const char* domain,
               BrowseListener& listener)
      : mBrowser(avahi_service_browser_new(client, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                           type.c_str(), domain, AvahiLookupFlags{}, told,
                                           &listener)) {}
  ~DaemonBrowse() override {
    if (mBrowser != nullptr) avahi_service_browser_free(mBrowser);
  }
  DaemonBrowse(const DaemonBrowse&) = delete;
  DaemonBrowse& operator=(const DaemonBrowse&) = delete;

  bool started() const { return mBrowser != nullptr; }

 private:
  static void told(AvahiServiceBrowser*, AvahiIfIndex interface, AvahiProtocol protocol,
                   AvahiBrowserEvent event, const char* name, const char* type, const char* domain,
                   AvahiLookupResultFlags, void* listener) {
    tellBrowseEvent(*static_cast<BrowseListener*>(listener), event,
                    {{interface, protocol}, name, type, domain});
  }

  AvahiServiceBrowser* mBrowser;
};

class DaemonResolve : public Responder::Query {
 public:
  DaemonResolve(AvahiClient* client, const ServiceName& service, Place place,
                AvahiProtocol addressFamily, Responder::ResolveCallback callback)
      : mTarget(std::move(callback)),
        mResolver(avahi_service_resolver_new(
            client, place.interface, place.protocol, service.name.c_str(), service.type.c_str(),
            service.domain.c_str(), addressFamily, AvahiLookupFlags{}, told, &mTarget)) {}
  ~DaemonResolve() override {
    if (mResolver != nullptr) avahi_service_resolver_free(mResolver);
  }
  DaemonResolve(const DaemonResolve&) = delete;
  DaemonResolve& operator=(const DaemonResolve&) = delete;

  bool started() const { return mResolver != nullptr; }

 private:
  static void told(AvahiServiceResolver*, AvahiIfIndex interface, AvahiProtocol,
                   AvahiResolverEvent event, const char*, const char*, const char*, const char*,
                   const AvahiAddress* address, std::uint16_t port, AvahiStringList* txt,
                   AvahiLookupResultFlags, void* target) {
    // The daemon sends the strings in the order of its own list, which is the reverse.
    AvahiStringList* strings = avahi_string_list_reverse(avahi_string_list_copy(txt));
    static_cast<ResolveTarget*>(target)->tell(event, interface, address, port, strings);
    avahi_string_list_free(strings);
  }

  ResolveTarget mTarget;
  AvahiServiceResolver* mResolver;
};

class ClientResponder : public DaemonResponder {
 public:
  ClientResponder(const AvahiPollAdapter& poll, std::function<void()> stateChanged) {
    // The first call back comes from inside avahi_client_new().
    mClient = avahi_client_new(poll.api(), AVAHI_CLIENT_NO_FAIL, told, this, nullptr);
    mStateChanged = std::move(stateChanged);
  }
  ~ClientResponder() override {
    if (mClient != nullptr) avahi_client_free(mClient);
  }
  ClientResponder(const ClientResponder&) = delete;
  ClientResponder& operator=(const ClientResponder&) = delete;

  bool connected() const { return mClient != nullptr; }

  State state() const override { return mState; }

  std::unique_ptr<Query> browse(const std::string& type, const std::string& domain,
                                BrowseListener& listener) override {
    auto query = std::make_unique<DaemonBrowse>(
        mClient, type, domain.empty() ? nullptr : domain.c_str(), listener);
    return query->started() ? std::move(query) : nullptr;
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, Place place,
                                 AvahiProtocol addressFamily, ResolveCallback callback) override {
    auto query = std::make_unique<DaemonResolve>(mClient, service, place, addressFamily,
                                                 std::move(callback));
    return query->started() ? std::move(query) : nullptr;
  }

 private:
  static State stateFor(AvahiClientState state) {
    switch (state) {
      case AVAHI_CLIENT_CONNECTING:
        return State::Waiting;
      case AVAHI_CLIENT_FAILURE:
        return State::Lost;
      // The daemon browses also while it still settles its own host name.
      case AVAHI_CLIENT_S_REGISTERING:
      case AVAHI_CLIENT_S_RUNNING:
      case AVAHI_CLIENT_S_COLLISION:
        return State::Ready;
    }
    return State::Lost;
  }

  static void told(AvahiClient*, AvahiClientState state, void* userData) {
    auto& self = *static_cast<ClientResponder*>(userData);
    if (std::exchange(self.mState, stateFor(state)) == self.mState) return;
    if (self.mStateChanged) self.mStateChanged();
  }

  State mState = State::Waiting;
  std::function<void()> mStateChanged;
  AvahiClient* mClient = nullptr;
};

}  // namespace

std::unique_ptr<DaemonResponder> connectToDaemon(const AvahiPollAdapter& poll,
                                                 std::function<void()> stateChanged) {
  auto responder = std::make_unique<ClientResponder>(poll, std::move(stateChanged));
  return responder->connected() ? std::move(responder) : nullptr;
}

}  // namespace platform::avahi
