#include "platform/avahi/Resolution.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace platform {
namespace {

using std::chrono::milliseconds;

// The kernel gives this index to the loopback interface of every network.
constexpr AvahiIfIndex kLoopbackInterface = 1;

constexpr milliseconds kLoopbackDelay{100};

// How long a place is asked. Nobody has an IPv4 address who has not told it in the first turns.
constexpr milliseconds kFirstTurns{1000};
constexpr int kFirstTurnCount = 5;
constexpr milliseconds kLaterTurns{2000};
constexpr int kLastTurnCount = 3;

// Between a question that was refused and the next; doubled each time.
constexpr milliseconds kBackOff{100};
constexpr int kMostDoublings = 5;

// After the first turns these are asked in turn, beginning with the second.
struct Kind {
  AvahiProtocol addressFamily;
  bool wantsTxt;
};
constexpr std::array<Kind, 3> kKinds{
    {{AVAHI_PROTO_INET, true}, {AVAHI_PROTO_INET6, true}, {AVAHI_PROTO_UNSPEC, false}}};

bool isLoopback(Place place) { return place.interface == kLoopbackInterface; }

}  // namespace

Resolution::Resolution(RunLoop& runLoop, QuestionQueue& queue, const ServiceName& service,
                       const Whereabouts& whereabouts, unsigned rank, double seconds, Done done)
    : mRunLoop(runLoop),
      mQueue(queue),
      mService(service),
      mWhereabouts(whereabouts),
      mRank(rank),
      mSeconds(seconds),
      mDone(std::move(done)),
      mDeferred(runLoop) {
  mLoopbackTimer = mRunLoop.startTimer(kLoopbackDelay, false, [this] {
    mLoopbackTimer.reset();
    update();
  });
  update();
}

Resolution::~Resolution() = default;

void Resolution::update() {
  if (mQuestion && !mWhereabouts.places.contains(mQuestion->place)) drop();
  if (mQuestion) return;
  const auto mayBeAsked = [this](Place place) {
    return !isLoopback(place) || mLoopbackTimer == nullptr;
  };
  const auto& places = mWhereabouts.places;
  if (std::none_of(places.begin(), places.end(), mayBeAsked)) {
    mTicket.reset();
  } else if (mTicket == nullptr) {
    const auto repeated = static_cast<unsigned>(mUnanswered + mRefused);
    mTicket = mQueue.enter(mRank + repeated, [this] { ask(); });
  }
}

Question Resolution::nextQuestion() const {
  const bool first = mUnanswered < kFirstTurnCount || mSecondBest;
  const auto turn = first ? 0u : static_cast<unsigned>(mUnanswered) - kFirstTurnCount + 1;
  const Kind kind = kKinds[turn % kKinds.size()];
  const auto order = [&](Place place) {
    const auto asked = mAsked.find({place, kind.addressFamily, kind.wantsTxt});
    return std::tuple(asked == mAsked.end() ? 0 : asked->second, isLoopback(place),
                      mWhereabouts.answered != place, place);
  };
  const Place place =
      *std::min_element(mWhereabouts.places.begin(), mWhereabouts.places.end(),
                        [&](Place one, Place other) { return order(one) < order(other); });
  return {place, kind.addressFamily, kind.wantsTxt};
}

void Resolution::ask() {
  mQuestion = nextQuestion();
  ++mAsked[*mQuestion];
  mQuery = mWhereabouts.responder->resolve(
      mService, *mQuestion, [this](Responder::News news, const Resolved& resolved) {
        mDeferred.post([this, news, resolved] { told(news, resolved); });
      });
  if (mQuery == nullptr) mDeferred.post([this] { refused(); });
}

void Resolution::told(Responder::News news, const Resolved& resolved) {
  switch (news) {
    case Responder::News::Accepted:
      return accepted();
    case Responder::News::Refused:
      return refused();
    case Responder::News::Answered:
      return answered(resolved);
  }
}

void Resolution::accepted() {
  mTicket->received();
  mRefused = 0;
  if (mTimeout == nullptr && mSeconds > 0) {
    const auto timeout =
        std::chrono::duration_cast<milliseconds>(std::chrono::duration<double>(mSeconds));
    mTimeout = mRunLoop.startTimer(timeout, false, [this] { timedOut(); });
  }
  const bool isShort = mUnanswered < kFirstTurnCount || mSecondBest;
  mTurn = mRunLoop.startTimer(isShort ? kFirstTurns : kLaterTurns, false, [this] { unanswered(); });
}

// It keeps its ticket meanwhile, so that a daemon that refuses is asked less.
void Resolution::refused() {
  mTicket->received();
  mQuery.reset();
  const milliseconds wait = kBackOff * (1 << std::min(mRefused, kMostDoublings));
  ++mRefused;
  mTurn = mRunLoop.startTimer(wait, false, [this] {
    drop();
    update();
  });
}

void Resolution::answered(const Resolved& resolved) {
  const Question question = *mQuestion;
  if (question.addressFamily == AVAHI_PROTO_INET) return finish(&resolved, question.place);
  mSecondBest = resolved;
  mSecondBestPlace = question.place;
  drop();
  update();
}

void Resolution::unanswered() {
  ++mUnanswered;
  if (mSecondBest && ++mLastTurns == kLastTurnCount) return timedOut();
  drop();
  update();
}

void Resolution::timedOut() { finish(mSecondBest ? &*mSecondBest : nullptr, mSecondBestPlace); }

void Resolution::drop() {
  mDeferred.cancel();
  mTurn.reset();
  mQuery.reset();
  mQuestion.reset();
  mTicket.reset();
}

void Resolution::finish(const Resolved* resolved, Place place) {
  const Done done = std::move(mDone);
  done(resolved, place);
}

}  // namespace platform
