// One service of a browser, wherever on the network it is announced. The browser owns it and tells
// it of responders and places.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/RunLoop.h"
#include "platform/ServiceDiscovery.h"
#include "platform/avahi/DeferredCalls.h"
#include "platform/avahi/Resolution.h"

namespace platform::avahi {

class AvahiService : public NetService {
 public:
  AvahiService(RunLoop& runLoop, ServiceName name);

  const ServiceName& serviceName() const { return mName; }

  // The places that the old responder told of are forgotten. Null while there is none.
  void useResponder(Responder* responder);
  void addPlace(Place place);
  void removePlace(Place place);
  bool isAnnounced() const { return !mWhereabouts.places.empty(); }

  Text description() const override;
  Text name() const override;
  Text type() const override;
  Text domain() const override;
  bool setClient(Callback callback, void* info) override;
  void schedule() override;
  void unschedule() override;
  bool resolveWithTimeout(double seconds, StreamError* error) override;
  void cancel() override;
  Data txtData() const override;
  std::shared_ptr<const std::vector<Data>> addresses() const override;

 private:
  void whereaboutsChanged();
  void resolved(const std::optional<Resolved>& outcome);
  void deliver();

  RunLoop& mRunLoop;
  const ServiceName mName;
  Whereabouts mWhereabouts;
  Callback mCallback = nullptr;
  void* mInfo = nullptr;
  bool mScheduled = false;
  std::optional<StreamError> mOutcome;  // that the client has not been told yet
  Resolved mResolved;
  std::unique_ptr<Resolution> mResolution;
  DeferredCalls mDeferred;
};

}  // namespace platform::avahi
