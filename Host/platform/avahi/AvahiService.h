// One service of a browser, wherever on the network it is announced. The browser owns it and tells
// it of responders and places. The address that it was resolved to is that of one place: when this
// place goes and others stay, or another responder took over, it has to be confirmed.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"
#include "platform/ServiceDiscovery.h"
#include "platform/avahi/QuestionQueue.h"
#include "platform/avahi/Resolution.h"

namespace platform {

class AvahiService : public NetService {
 public:
  // What the service calls, from the run loop, when nobody has its address any more.
  using Moved = std::function<void()>;

  // `rank` is that of its questions in the queue, which must live longer.
  AvahiService(RunLoop& runLoop, QuestionQueue& queue, ServiceName name, unsigned rank,
               Moved moved);

  // The places that the old responder told of are forgotten. Null while there is none.
  void useResponder(Responder* responder);
  void addPlace(Place place);
  void removePlace(Place place);
  void takePlaces(const AvahiService& from);
  bool isAnnounced() const { return !mWhereabouts.places.empty(); }

  // Asks for the address again where it was not confirmed yet since the responder changed.
  void confirm();

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
  void resolved(const Resolved* outcome, Place place);
  void confirmed(const Resolved* outcome, Place place);
  void deliver();

  RunLoop& mRunLoop;
  QuestionQueue& mQueue;
  const ServiceName mName;
  const unsigned mRank;
  const Moved mMoved;
  Whereabouts mWhereabouts;
  Callback mCallback = nullptr;
  void* mInfo = nullptr;
  bool mScheduled = false;
  std::optional<StreamError> mOutcome;  // that the client has not been told yet
  Resolved mResolved;
  bool mConfirmed = true;
  std::unique_ptr<Resolution> mResolution;    // for the client
  std::unique_ptr<Resolution> mConfirmation;  // for ourselves
  std::unique_ptr<RunLoop::Timer> mConfirmationTimer;
  DeferredCalls mDeferred;
};

}  // namespace platform
