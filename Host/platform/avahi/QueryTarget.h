// What Avahi's callbacks get as their user data, for the daemon's client and for the stack in this
// process alike: the two have the same callbacks but for their first argument.
#pragma once

#include <avahi-common/address.h>
#include <avahi-common/defs.h>

#include <cstdint>

#include "platform/avahi/Responder.h"

namespace platform::avahi {

struct ServiceEvent {
  Place place;
  const char* name;
  const char* type;
  const char* domain;
};

void tellBrowseEvent(BrowseListener& listener, AvahiBrowserEvent event,
                     const ServiceEvent& service);

// Tells an outcome once; what Avahi finds out later is ignored.
class ResolveTarget {
 public:
  explicit ResolveTarget(Responder::ResolveCallback callback);

  void tell(AvahiResolverEvent event, AvahiIfIndex interface, const AvahiAddress* address,
            std::uint16_t port, const Data& txt);

 private:
  Responder::ResolveCallback mCallback;
  bool mTold = false;
};

}  // namespace platform::avahi
