// A browser and its services. Avahi tells of a service once for each interface and protocol; the
// product hears of its first appearance and its last disappearance. When another responder takes
// over, what is known stays known: what the new one does not tell of in due time is reported as
// removed, and only what is new as added. A service whose address has changed is reported as
// removed and added.
//
// Everything is told from the run loop, never from inside one of Avahi's callbacks, so that the
// product may destroy the browser from its own.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>

#include "platform/DeferredCalls.h"
#include "platform/DiscoveryStatus.h"
#include "platform/RunLoop.h"
#include "platform/ServiceDiscovery.h"
#include "platform/avahi/AvahiService.h"
#include "platform/avahi/DomainBrowses.h"
#include "platform/avahi/QuestionQueue.h"
#include "platform/avahi/Responder.h"
#include "platform/avahi/ResponderChoice.h"

namespace platform {

class AvahiBrowser : public NetServiceBrowser,
                     public ResponderChoice::Listener,
                     public BrowseListener {
 public:
  // Services whose names contain `askedFirst` are the first in the queue, if it is not empty.
  // `status` may be null.
  AvahiBrowser(RunLoop& runLoop, std::string askedFirst, Callback callback, void* info,
               DiscoveryStatus* status);
  ~AvahiBrowser() override;

  void schedule() override;
  void unschedule() override;
  bool searchForServices(const Text& domain, const Text& type, StreamError* error) override;
  void stopSearch(StreamError* error) override;
  void invalidate() override;

  void responderChanged(Responder* responder) override;
  void noResponder() override;
  void appeared(const ServiceName& service, Place place) override;
  void disappeared(const ServiceName& service, Place place) override;
  void allForNow() override;
  void browsingFailed() override;

 private:
  // An error of the browser itself has no service.
  struct Event {
    unsigned long flags;
    std::shared_ptr<AvahiService> service;
  };

  std::shared_ptr<AvahiService> newService(const ServiceName& name);
  void replace(const ServiceName& name);
  void removeUnannounced();
  void stop();
  void tell(Event event);
  void deliver();

  RunLoop& mRunLoop;
  const std::string mAskedFirst;
  const Callback mCallback;
  void* const mInfo;
  DiscoveryStatus* const mStatus;
  bool mScheduled = false;
  bool mValid = true;
  std::string mType;
  std::string mDomain;

  // In the order in which they depend on each other: services ask the responder, by the queue.
  QuestionQueue mQueue;
  std::unique_ptr<ResponderChoice> mChoice;
  std::deque<Event> mEvents;  // not told yet
  std::map<ServiceName, std::shared_ptr<AvahiService>> mServices;
  std::unique_ptr<DomainBrowses> mBrowse;

  std::unique_ptr<RunLoop::Timer> mCarryOverTimer;
  bool mCarryingOver = false;
  DeferredCalls mDeferred;
};

}  // namespace platform
