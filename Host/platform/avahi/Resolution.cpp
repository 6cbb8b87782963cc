#include "platform/avahi/Resolution.h"

#include <chrono>

namespace platform::avahi {
namespace {

using std::chrono::milliseconds;

// The kernel gives this index to the loopback interface of every network.
constexpr AvahiIfIndex kLoopbackInterface = 1;

constexpr milliseconds kLoopbackDelay{100};

// Between a question that failed and the next, so that one that fails at once is no busy loop.
constexpr milliseconds kAgainDelay{100};

}  // namespace

Resolution::Resolution(RunLoop& runLoop, const ServiceName& service, const Whereabouts& whereabouts,
                       double seconds, Done done)
    : mRunLoop(runLoop),
      mService(service),
      mWhereabouts(whereabouts),
      mDone(std::move(done)),
      mDeferred(runLoop) {
  if (seconds > 0) {
    const auto timeout =
        std::chrono::duration_cast<milliseconds>(std::chrono::duration<double>(seconds));
    mTimeout = mRunLoop.startTimer(timeout, false, [this] { finish(std::nullopt); });
  }
  mLoopbackTimer = mRunLoop.startTimer(kLoopbackDelay, false, [this] {
    mLoopbackTimer.reset();
    update();
  });
  update();
}

Resolution::~Resolution() = default;

void Resolution::update() {
  std::erase_if(mQuestions, [this](const auto& asked) {
    return !mWhereabouts.places.contains(asked.first.first);
  });
  for (const Place& place : mWhereabouts.places) {
    for (const AvahiProtocol family : {AVAHI_PROTO_INET, AVAHI_PROTO_INET6}) {
      const Question question{place, family};
      if (isWanted(question) && !mQuestions.contains(question)) ask(question);
    }
  }
}

bool Resolution::isWanted(const Question& question) const {
  const auto& [place, family] = question;
  if (family == AVAHI_PROTO_INET6 && !mIPv6Too) return false;
  return place.interface != kLoopbackInterface || mLoopbackTimer == nullptr;
}

void Resolution::ask(const Question& question) {
  auto query = mWhereabouts.responder->resolve(
      mService, question.first, question.second,
      [this, question](const std::optional<Resolved>& resolved) {
        mDeferred.post([this, question, resolved] { answered(question, resolved); });
      });
  const bool asked = query != nullptr;
  mQuestions[question] = std::move(query);
  if (!asked) mDeferred.post([this, question] { answered(question, std::nullopt); });
}

void Resolution::answered(const Question& question, const std::optional<Resolved>& resolved) {
  if (resolved) return finish(resolved);
  mQuestions.erase(question);
  mIPv6Too = true;
  if (mAgainTimer != nullptr) return;
  mAgainTimer = mRunLoop.startTimer(kAgainDelay, false, [this] {
    mAgainTimer.reset();
    update();
  });
}

void Resolution::finish(const std::optional<Resolved>& resolved) {
  const Done done = std::move(mDone);
  done(resolved);
}

}  // namespace platform::avahi
