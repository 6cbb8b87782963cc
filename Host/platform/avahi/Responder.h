// Who tells the program what is announced on the network: the host's daemon, or the stack in this
// process. Both speak Avahi's language; this is the part of it that the program uses. Nothing here
// waits for an answer. Callbacks come from Avahi, so they must not free the responder. Queries must
// go before their responder.
#pragma once

#include <avahi-common/address.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>

#include "platform/Data.h"

namespace platform {

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

  bool operator==(const Place&) const = default;
  bool operator<(const Place& other) const {
    return std::tie(interface, protocol) < std::tie(other.interface, other.protocol);
  }
};

// What is asked of a service in one place.
struct Question {
  Place place;
  AvahiProtocol addressFamily = AVAHI_PROTO_INET;
  bool wantsTxt = true;  // otherwise a service without a TXT record answers, too

  bool operator==(const Question&) const = default;
  bool operator<(const Question& other) const {
    return std::tie(place, addressFamily, wantsTxt) <
           std::tie(other.place, other.addressFamily, other.wantsTxt);
  }
};

struct Resolved {
  Data address;  // a socket address record, see Network.h
  Data txt;      // null when it was not asked for
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

// A domain may be told of once for each place.
class DomainListener {
 public:
  virtual ~DomainListener() = default;
  virtual void domainAppeared(const std::string& domain) = 0;
  virtual void domainDisappeared(const std::string& domain) = 0;
};

class Responder {
 public:
  // Destroying a query ends it: nothing is called afterwards. Not from inside its own callback.
  class Query {
   public:
    virtual ~Query() = default;
  };

  // A question is accepted, and then perhaps answered once; or it is refused, then or later, which
  // says nothing about the service.
  enum class News { Accepted, Refused, Answered };
  using ResolveCallback = std::function<void(News news, const Resolved& resolved)>;

  virtual ~Responder() = default;

  // The queries are null when they are refused at once.
  virtual std::unique_ptr<Query> browse(const std::string& type, const std::string& domain,
                                        BrowseListener& listener) = 0;
  virtual std::unique_ptr<Query> browseDomains(DomainListener& listener) = 0;
  virtual std::unique_ptr<Query> resolve(const ServiceName& service, const Question& question,
                                         ResolveCallback callback) = 0;

  // The one to browse when none is named.
  virtual std::string defaultDomain() const = 0;
};

}  // namespace platform
