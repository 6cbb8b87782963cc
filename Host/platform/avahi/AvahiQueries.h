// Questions to Avahi as objects: destroying one ends it. The daemon's client and the stack in this
// process offer the same functions under two sets of names; an `Api` is one of the sets:
//   Peer, Browser, Resolver                      whom to ask, and the questions
//   newBrowser, freeBrowser, newResolver, freeResolver
//   Data txtOf(AvahiStringList*)                 the record that a resolver tells of
#pragma once

#include <avahi-common/defs.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/avahi/QueryTarget.h"
#include "platform/avahi/Responder.h"

namespace platform::avahi {

template <typename Api>
class BrowseQuery final : public Responder::Query {
 public:
  BrowseQuery(typename Api::Peer* peer, const std::string& type, const std::string& domain,
              BrowseListener& listener)
      : mBrowser(Api::newBrowser(peer, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, type.c_str(),
                                 domain.empty() ? nullptr : domain.c_str(), AvahiLookupFlags{},
                                 told, &listener)) {}
  ~BrowseQuery() override {
    if (mBrowser != nullptr) Api::freeBrowser(mBrowser);
  }
  BrowseQuery(const BrowseQuery&) = delete;
  BrowseQuery& operator=(const BrowseQuery&) = delete;

  bool started() const { return mBrowser != nullptr; }

 private:
  static void told(typename Api::Browser*, AvahiIfIndex interface, AvahiProtocol protocol,
                   AvahiBrowserEvent event, const char* name, const char* type, const char* domain,
                   AvahiLookupResultFlags, void* listener) {
    tellBrowseEvent(*static_cast<BrowseListener*>(listener), event,
                    {{interface, protocol}, name, type, domain});
  }

  typename Api::Browser* mBrowser;
};

template <typename Api>
class ResolveQuery final : public Responder::Query {
 public:
  ResolveQuery(typename Api::Peer* peer, const ServiceName& service, Place place,
               AvahiProtocol addressFamily, Responder::ResolveCallback callback)
      : mTarget(std::move(callback)),
        mResolver(Api::newResolver(peer, place.interface, place.protocol, service.name.c_str(),
                                   service.type.c_str(), service.domain.c_str(), addressFamily,
                                   AvahiLookupFlags{}, told, &mTarget)) {}
  ~ResolveQuery() override {
    if (mResolver != nullptr) Api::freeResolver(mResolver);
  }
  ResolveQuery(const ResolveQuery&) = delete;
  ResolveQuery& operator=(const ResolveQuery&) = delete;

  bool started() const { return mResolver != nullptr; }

 private:
  static void told(typename Api::Resolver*, AvahiIfIndex interface, AvahiProtocol,
                   AvahiResolverEvent event, const char*, const char*, const char*, const char*,
                   const AvahiAddress* address, std::uint16_t port, AvahiStringList* txt,
                   AvahiLookupResultFlags, void* target) {
    static_cast<ResolveTarget*>(target)->tell(event, interface, address, port, Api::txtOf(txt));
  }

  ResolveTarget mTarget;
  typename Api::Resolver* mResolver;
};

// A question that has been asked; null when it could not be.
template <typename Query, typename... Arguments>
std::unique_ptr<Responder::Query> ask(Arguments&&... arguments) {
  auto query = std::make_unique<Query>(std::forward<Arguments>(arguments)...);
  return query->started() ? std::move(query) : nullptr;
}

}  // namespace platform::avahi
