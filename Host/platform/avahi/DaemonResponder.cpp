#include "platform/avahi/DaemonResponder.h"

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>

#include <utility>

#include "platform/avahi/AvahiQueries.h"
#include "platform/avahi/Conversions.h"

namespace platform::avahi {
namespace {

struct DaemonApi {
  using Peer = AvahiClient;
  using Browser = AvahiServiceBrowser;
  using Resolver = AvahiServiceResolver;
  static constexpr auto newBrowser = avahi_service_browser_new;
  static constexpr auto freeBrowser = avahi_service_browser_free;
  static constexpr auto newResolver = avahi_service_resolver_new;
  static constexpr auto freeResolver = avahi_service_resolver_free;

  // The daemon sends the strings in the order of its own list, which is the reverse.
  static Data txtOf(AvahiStringList* strings) {
    AvahiStringList* const inOrder = avahi_string_list_reverse(avahi_string_list_copy(strings));
    Data txt = txtRecord(inOrder);
    avahi_string_list_free(inOrder);
    return txt;
  }
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
    return ask<BrowseQuery<DaemonApi>>(mClient, type, domain, listener);
  }

  std::unique_ptr<Query> resolve(const ServiceName& service, Place place,
                                 AvahiProtocol addressFamily, ResolveCallback callback) override {
    return ask<ResolveQuery<DaemonApi>>(mClient, service, place, addressFamily,
                                        std::move(callback));
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
