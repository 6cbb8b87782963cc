#include "platform/avahi/AvahiService.h"

#include <chrono>
#include <string>
#include <string_view>
#include <utility>

namespace platform {
namespace {

// As long as the program waits for a first address.
constexpr double kConfirmationSeconds = 30;

// A service that ends says goodbye in one place after the other.
constexpr std::chrono::milliseconds kGoodbyes{1000};

bool isSame(const Data& one, const Data& other) {
  return one != nullptr && other != nullptr && *one == *other;
}

}  // namespace

AvahiService::AvahiService(RunLoop& runLoop, QuestionQueue& queue, ServiceName name, unsigned rank,
                           Moved moved)
    : mRunLoop(runLoop),
      mQueue(queue),
      mName(std::move(name)),
      mRank(rank),
      mMoved(std::move(moved)),
      mDeferred(runLoop) {}

void AvahiService::useResponder(Responder* responder) {
  mConfirmed = false;
  mConfirmation.reset();
  mConfirmationTimer.reset();
  mWhereabouts.places.clear();
  whereaboutsChanged();
  mWhereabouts.responder = responder;
}

void AvahiService::addPlace(Place place) {
  if (mWhereabouts.places.insert(place).second) whereaboutsChanged();
}

void AvahiService::removePlace(Place place) {
  if (mWhereabouts.places.erase(place) == 0) return;
  whereaboutsChanged();
  if (mWhereabouts.answered != place) return;
  mConfirmed = false;
  mConfirmationTimer = mRunLoop.startTimer(kGoodbyes, false, [this] {
    mConfirmationTimer.reset();
    confirm();
  });
}

void AvahiService::takePlaces(const AvahiService& from) {
  mWhereabouts.responder = from.mWhereabouts.responder;
  mWhereabouts.places = from.mWhereabouts.places;
}

void AvahiService::whereaboutsChanged() {
  if (mResolution != nullptr) mResolution->update();
  if (mConfirmation != nullptr) mConfirmation->update();
}

void AvahiService::confirm() {
  if (mConfirmed || !isAnnounced() || mResolved.address == nullptr) return;
  if (mResolution != nullptr || mConfirmation != nullptr) return;
  mConfirmation = std::make_unique<Resolution>(
      mRunLoop, mQueue, mName, mWhereabouts, mRank + 1, kConfirmationSeconds,
      [this](const Resolved* outcome, Place place) { confirmed(outcome, place); });
}

Text AvahiService::description() const {
  const auto shown = [](const Text& text) {
    return std::string(text.isNull() ? std::string_view("<null>") : text.utf8());
  };
  return Text::fromUtf8("{name = " + shown(name()) + ", type = " + shown(type()) +
                        ", domain = " + shown(domain()) + "}");
}

Text AvahiService::name() const { return Text::fromUtf8(mName.name); }
Text AvahiService::type() const { return Text::fromUtf8(mName.type); }
Text AvahiService::domain() const { return Text::fromUtf8(mName.domain); }

bool AvahiService::setClient(Callback callback, void* info) {
  mCallback = callback;
  mInfo = info;
  return true;
}

void AvahiService::schedule() {
  mScheduled = true;
  if (mOutcome) mDeferred.post([this] { deliver(); });
}

void AvahiService::unschedule() {
  mScheduled = false;
  cancel();
}

bool AvahiService::resolveWithTimeout(double seconds, StreamError* error) {
  if (mResolution != nullptr) {
    if (error != nullptr) *error = {kStreamErrorDomainNetServices, kNetServicesErrorUnknown};
    return false;
  }
  mOutcome.reset();
  mConfirmation.reset();
  mResolution = std::make_unique<Resolution>(
      mRunLoop, mQueue, mName, mWhereabouts, mRank, seconds,
      [this](const Resolved* outcome, Place place) { resolved(outcome, place); });
  return true;
}

void AvahiService::cancel() {
  mResolution.reset();
  mOutcome.reset();
}

Data AvahiService::txtData() const { return mResolved.txt; }

std::shared_ptr<const std::vector<Data>> AvahiService::addresses() const {
  if (mResolved.address == nullptr) return nullptr;
  return std::make_shared<const std::vector<Data>>(1, mResolved.address);
}

void AvahiService::resolved(const Resolved* outcome, Place place) {
  if (outcome != nullptr) {
    mResolved = *outcome;
    mWhereabouts.answered = place;
    mConfirmed = true;
  }
  mOutcome = outcome != nullptr
                 ? StreamError{}
                 : StreamError{kStreamErrorDomainNetServices, kNetServicesErrorTimeout};
  mResolution.reset();
  deliver();
}

void AvahiService::confirmed(const Resolved* outcome, Place place) {
  mConfirmed = outcome != nullptr && isSame(outcome->address, mResolved.address);
  mConfirmation.reset();
  if (!mConfirmed) return mMoved();
  mWhereabouts.answered = place;
}

// The client may cancel, or end this service with its browser.
void AvahiService::deliver() {
  if (!mScheduled || !mOutcome) return;
  StreamError error = *std::exchange(mOutcome, std::nullopt);
  if (mCallback != nullptr) mCallback(this, &error, mInfo);
}

}  // namespace platform
