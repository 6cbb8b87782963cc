// One resolve in progress. It asks in one place at a time, when the queue lets it: where the
// service was answered before, then in the others in turn; a place that has not answered within its
// turn is asked again later. A refused question says nothing: it is repeated after a while, which
// grows. The time-out counts from the first question that was accepted.
//
// An IPv4 address is wanted, since the program speaks no other protocol. Only when questions for it
// have gone unanswered for some seconds is IPv6 asked for as well, so that the printer is seen at
// least, and then whether the service is there without a TXT record. Such an answer counts when
// some last questions for a better one are not answered: packets get lost, most of all in a crowd.
// An announcement on the loopback interface has to wait a moment for a better one: a service of
// this machine is announced there too, with an address that means nothing to anybody else.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"
#include "platform/avahi/QuestionQueue.h"
#include "platform/avahi/Responder.h"

namespace platform {

// Where a service can be asked for: the places belong to the responder.
struct Whereabouts {
  Responder* responder = nullptr;  // null while there is none
  std::set<Place> places;
  std::optional<Place> answered;  // the last time that it was resolved
};

class Resolution {
 public:
  // Null when the time is over, else with the place of the answer. Called once, from the run loop;
  // may destroy the resolution.
  using Done = std::function<void(const Resolved* resolved, Place place)>;

  // `rank` is that of the first question in the queue; each that is repeated has a higher one.
  // What is referred to must live longer. No time-out if `seconds` is not positive.
  Resolution(RunLoop& runLoop, QuestionQueue& queue, const ServiceName& service,
             const Whereabouts& whereabouts, unsigned rank, double seconds, Done done);
  ~Resolution();
  Resolution(const Resolution&) = delete;
  Resolution& operator=(const Resolution&) = delete;

  // To be called when the whereabouts have changed. A new responder starts without places.
  void update();

 private:
  Question nextQuestion() const;
  void ask();
  void told(Responder::News news, const Resolved& resolved);
  void accepted();
  void refused();
  void answered(const Resolved& resolved);
  void unanswered();
  void timedOut();
  void drop();
  void finish(const Resolved* resolved, Place place);

  RunLoop& mRunLoop;
  QuestionQueue& mQueue;
  const ServiceName& mService;
  const Whereabouts& mWhereabouts;
  const unsigned mRank;
  const double mSeconds;
  Done mDone;

  std::map<Question, int> mAsked;       // how often
  int mUnanswered = 0;                  // turns
  int mRefused = 0;                     // in a row
  std::optional<Resolved> mSecondBest;  // answer so far
  Place mSecondBestPlace;
  int mLastTurns = 0;  // unanswered since

  // In the order in which they follow each other: the ticket, the question and the query.
  std::unique_ptr<QuestionQueue::Ticket> mTicket;
  std::optional<Question> mQuestion;
  std::unique_ptr<Responder::Query> mQuery;

  std::unique_ptr<RunLoop::Timer> mTimeout;
  std::unique_ptr<RunLoop::Timer> mTurn;           // of the question, or until it may be repeated
  std::unique_ptr<RunLoop::Timer> mLoopbackTimer;  // while loopback has to wait
  DeferredCalls mDeferred;
};

}  // namespace platform
