// Whose turn it is to ask the responder: a building has many hundreds of services, and a daemon
// takes only so many questions at a time from one program. Each browser has one.
//
// A few questions are let through at a time. One that the responder has got, and has not answered
// within a moment, makes room for the next, though it is still asked, so that services that never
// answer hold nobody up; only when very many are asked in all does the queue stand still. Who was
// never asked goes first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"

namespace platform {

class QuestionQueue {
 public:
  // A place in the queue, and then the right to ask one question. Ends by its destruction, also
  // from inside the call. The queue must live longer.
  class Ticket;

  explicit QuestionQueue(RunLoop& runLoop);
  QuestionQueue(const QuestionQueue&) = delete;
  QuestionQueue& operator=(const QuestionQueue&) = delete;

  // Calls back, from the run loop, when it is the holder's turn: low ranks first, and one rank in
  // the order of the calls.
  std::unique_ptr<Ticket> enter(unsigned rank, std::function<void()> yourTurn);

 private:
  using Position = std::pair<unsigned, std::uint64_t>;  // rank, and how many came before

  void callNextSoon();
  void callNext();

  RunLoop& mRunLoop;
  std::map<Position, Ticket*> mWaiting;
  std::uint64_t mEntered = 0;
  std::size_t mFresh = 0;  // asked, and received a moment ago at most
  std::size_t mAsked = 0;  // in all
  bool mCalling = false;   // put off
  DeferredCalls mDeferred;
};

class QuestionQueue::Ticket {
 public:
  Ticket(QuestionQueue& queue, Position position, std::function<void()> yourTurn);
  ~Ticket();
  Ticket(const Ticket&) = delete;
  Ticket& operator=(const Ticket&) = delete;

  // The responder has got the question, whatever it makes of it. A bus allows only so many calls
  // that have no reply yet.
  void received();

 private:
  friend class QuestionQueue;

  void call();
  void makeRoom();

  QuestionQueue& mQueue;
  const Position mPosition;
  const std::function<void()> mYourTurn;
  bool mCalled = false;
  bool mIsFresh = false;
  std::unique_ptr<RunLoop::Timer> mRoomTimer;
};

}  // namespace platform
