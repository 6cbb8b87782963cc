#include "platform/avahi/AvahiService.h"

#include <string>
#include <string_view>
#include <utility>

namespace platform::avahi {

AvahiService::AvahiService(RunLoop& runLoop, ServiceName name)
    : mRunLoop(runLoop), mName(std::move(name)), mDeferred(runLoop) {}

void AvahiService::useResponder(Responder* responder) {
  mWhereabouts.places.clear();
  whereaboutsChanged();
  mWhereabouts.responder = responder;
}

void AvahiService::addPlace(Place place) {
  if (mWhereabouts.places.insert(place).second) whereaboutsChanged();
}

void AvahiService::removePlace(Place place) {
  if (mWhereabouts.places.erase(place) != 0) whereaboutsChanged();
}

void AvahiService::whereaboutsChanged() {
  if (mResolution != nullptr) mResolution->update();
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
  mResolution = std::make_unique<Resolution>(
      mRunLoop, mName, mWhereabouts, seconds,
      [this](const std::optional<Resolved>& outcome) { resolved(outcome); });
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

void AvahiService::resolved(const std::optional<Resolved>& outcome) {
  if (outcome) mResolved = *outcome;
  mOutcome = outcome ? StreamError{}
                     : StreamError{kStreamErrorDomainNetServices, kNetServicesErrorTimeout};
  mResolution.reset();
  deliver();
}

// The client may cancel, or end this service with its browser.
void AvahiService::deliver() {
  if (!mScheduled || !mOutcome) return;
  StreamError error = *std::exchange(mOutcome, std::nullopt);
  if (mCallback != nullptr) mCallback(this, &error, mInfo);
}

}  // namespace platform::avahi
