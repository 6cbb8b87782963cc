#include "platform/avahi/QuestionQueue.h"

#include <chrono>

namespace platform {
namespace {

constexpr std::size_t kMostFresh = 32;
constexpr std::chrono::milliseconds kFresh{100};

// Half of what avahi-daemon allows a client by default (objects-per-client-max), which counts a
// question until it has been told that the question is dropped.
constexpr std::size_t kMostAsked = 512;

}  // namespace

QuestionQueue::QuestionQueue(RunLoop& runLoop) : mRunLoop(runLoop), mDeferred(runLoop) {}

std::unique_ptr<QuestionQueue::Ticket> QuestionQueue::enter(unsigned rank,
                                                            std::function<void()> yourTurn) {
  auto ticket = std::make_unique<Ticket>(*this, Position{rank, mEntered++}, std::move(yourTurn));
  mWaiting.emplace(ticket->mPosition, ticket.get());
  callNextSoon();
  return ticket;
}

void QuestionQueue::callNextSoon() {
  if (mWaiting.empty() || std::exchange(mCalling, true)) return;
  mDeferred.post([this] { callNext(); });
}

void QuestionQueue::callNext() {
  mCalling = false;
  while (!mWaiting.empty() && mFresh < kMostFresh && mAsked < kMostAsked) {
    Ticket* const next = mWaiting.begin()->second;
    mWaiting.erase(mWaiting.begin());
    next->call();
  }
}

QuestionQueue::Ticket::Ticket(QuestionQueue& queue, Position position,
                              std::function<void()> yourTurn)
    : mQueue(queue), mPosition(position), mYourTurn(std::move(yourTurn)) {}

QuestionQueue::Ticket::~Ticket() {
  if (!mCalled) {
    mQueue.mWaiting.erase(mPosition);
    return;
  }
  --mQueue.mAsked;
  makeRoom();
}

void QuestionQueue::Ticket::call() {
  mCalled = true;
  ++mQueue.mAsked;
  ++mQueue.mFresh;
  mIsFresh = true;
  const std::function<void()> yourTurn = mYourTurn;
  yourTurn();
}

void QuestionQueue::Ticket::received() {
  mRoomTimer = mQueue.mRunLoop.startTimer(kFresh, false, [this] { makeRoom(); });
}

void QuestionQueue::Ticket::makeRoom() {
  mRoomTimer.reset();
  if (std::exchange(mIsFresh, false)) --mQueue.mFresh;
  mQueue.callNextSoon();
}

}  // namespace platform
