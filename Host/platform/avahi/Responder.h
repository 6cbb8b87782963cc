// Who tells the program what is announced on the network: the host's daemon, or the stack in this
// process. Both speak Avahi's language; this is the part of it that the program uses. Callbacks
// come from Avahi, so they must not free the responder. Queries must go before their responder.
#pragma once

#include <avahi-common/address.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "platform/Data.h"

namespace platform::avahi {

// The bytes as they came from the network: not necessarily valid UTF-8.
struct ServiceName {
  std::string name;
  std::string type;
  std::string domain;

  bool operator<(const ServiceName& other) const {
    return std::tie(name, type, domain) < std::tie(other.name, other.type, other.domain);
  }
};

// Where a service is announced. One service may be announced in several places.
struct Place {
  AvahiIfIndex interface = AVAHI_IF_UNSPEC;
  AvahiProtocol protocol = AVAHI_PROTO_UNSPEC;

  bool operator<(const Place& other) const {
    return std::tie(interface, protocol) < std::tie(other.interface, other.protocol);
  }
};

struct Resolved {
  Data address;  // a socket address record, see Network.h
  Data txt;
};

class BrowseListener {
 public:
  virtual ~BrowseListener() = default;
  virtual void appeared(const ServiceName& service, Place place) = 0;
  virtual void disappeared(const ServiceName& service, Place place) = 0;
  // What was there from the start has been told.
  virtual void allForNow() = 0;
  virtual void browsingFailed() = 0;
};

class Responder {
 public:
  // Destroying a query ends it: nothing is called afterwards. Not from inside its own callback.
  class Query {
   public:
    virtual ~Query() = default;
  };

  // Nothing on failure; Avahi gives up after some seconds.
  using ResolveCallback = std::function<void(const std::optional<Resolved>& resolved)>;

  virtual ~Responder() = default;

  // Both return null on failure. An empty domain is the default one.
  virtual std::unique_ptr<Query> browse(const std::string& type, const std::string& domain,
                                        BrowseListener& listener) = 0;

  // Asks for an address of one family. Only the first answer is told.
  virtual std::unique_ptr<Query> resolve(const ServiceName& service, Place place,
                                         AvahiProtocol addressFamily, ResolveCallback callback) = 0;
};

}  // namespace platform::avahi
