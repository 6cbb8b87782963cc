#include "platform/avahi/QueryTarget.h"

#include <utility>

#include "platform/avahi/Conversions.h"

namespace platform::avahi {

void tellBrowseEvent(BrowseListener& listener, AvahiBrowserEvent event,
                     const ServiceEvent& service) {
  switch (event) {
    case AVAHI_BROWSER_NEW:
      return listener.appeared({service.name, service.type, service.domain}, service.place);
    case AVAHI_BROWSER_REMOVE:
      return listener.disappeared({service.name, service.type, service.domain}, service.place);
    case AVAHI_BROWSER_ALL_FOR_NOW:
      return listener.allForNow();
    case AVAHI_BROWSER_FAILURE:
      return listener.browsingFailed();
    case AVAHI_BROWSER_CACHE_EXHAUSTED:
      return;
  }
}

ResolveTarget::ResolveTarget(Responder::ResolveCallback callback)
    : mCallback(std::move(callback)) {}

void ResolveTarget::tell(AvahiResolverEvent event, AvahiIfIndex interface,
                         const AvahiAddress* address, std::uint16_t port, const Data& txt) {
  if (std::exchange(mTold, true)) return;
  if (event == AVAHI_RESOLVER_FOUND && address != nullptr) {
    mCallback(Resolved{addressRecord(*address, port, interface), txt});
  } else {
    mCallback(std::nullopt);
  }
}

}  // namespace platform::avahi
