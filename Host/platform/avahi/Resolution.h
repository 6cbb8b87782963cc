// One resolve in progress. It asks in all the places where the service is announced at once, and
// the first answer counts. Avahi gives up on a question after a few seconds; it is asked again
// until the product's own time-out.
//
// An IPv4 address is wanted, since the program speaks no other protocol. Only when nobody has one
// in the time of one question is IPv6 asked for as well, so that the printer is seen at least. An
// announcement on the loopback interface has to wait a moment for a better one: a service of this
// machine is announced there too, with an address that means nothing to anybody else.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "platform/RunLoop.h"
#include "platform/avahi/DeferredCalls.h"
#include "platform/avahi/Responder.h"

namespace platform::avahi {

// Where a service can be asked for: the places belong to the responder.
struct Whereabouts {
  Responder* responder = nullptr;  // null while there is none
  std::set<Place> places;
};

class Resolution {
 public:
  // Nothing when the time is over. Called once, from the run loop; may destroy the resolution.
  using Done = std::function<void(const std::optional<Resolved>& resolved)>;

  // `service` and `whereabouts` must live longer. No time-out if `seconds` is not positive.
  Resolution(RunLoop& runLoop, const ServiceName& service, const Whereabouts& whereabouts,
             double seconds, Done done);
  ~Resolution();
  Resolution(const Resolution&) = delete;
  Resolution& operator=(const Resolution&) = delete;

  // To be called when the whereabouts have changed. A new responder starts without places.
  void update();

 private:
  using Question = std::pair<Place, AvahiProtocol>;

  bool isWanted(const Question& question) const;
  void ask(const Question& question);
  void answered(const Question& question, const std::optional<Resolved>& resolved);
  void finish(const std::optional<Resolved>& resolved);

  RunLoop& mRunLoop;
  const ServiceName& mService;
  const Whereabouts& mWhereabouts;
  Done mDone;
  bool mIPv6Too = false;
  std::map<Question, std::unique_ptr<Responder::Query>> mQuestions;
  std::unique_ptr<RunLoop::Timer> mTimeout;
  std::unique_ptr<RunLoop::Timer> mLoopbackTimer;  // while loopback has to wait
  std::unique_ptr<RunLoop::Timer> mAgainTimer;
  DeferredCalls mDeferred;
};

}  // namespace platform::avahi
