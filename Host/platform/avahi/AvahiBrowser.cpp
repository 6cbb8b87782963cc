#include "platform/avahi/AvahiBrowser.h"

#include <avahi-common/domain.h>

#include <chrono>
#include <utility>
#include <vector>

namespace platform {
namespace {

// A responder that takes over has told of what answered its first question. A printer that has just
// answered somebody else stays silent for a second, and its answer can get lost: until the second
// question has been answered as well, nothing is called gone.
constexpr std::chrono::milliseconds kCarryOver{2000};

// Ranks in the queue.
constexpr unsigned kAskedFirst = 0;
constexpr unsigned kAskedThen = 1;

constexpr StreamError kUnknownError{kStreamErrorDomainNetServices, kNetServicesErrorUnknown};

}  // namespace

AvahiBrowser::AvahiBrowser(RunLoop& runLoop, std::string askedFirst, Callback callback, void* info,
                           DiscoveryStatus* status)
    : mRunLoop(runLoop),
      mAskedFirst(std::move(askedFirst)),
      mCallback(callback),
      mInfo(info),
      mStatus(status),
      mQueue(runLoop),
      mDeferred(runLoop) {}

AvahiBrowser::~AvahiBrowser() { stop(); }

void AvahiBrowser::schedule() {
  mScheduled = true;
  mDeferred.post([this] { deliver(); });
}

void AvahiBrowser::unschedule() { mScheduled = false; }

bool AvahiBrowser::searchForServices(const Text& domain, const Text& type, StreamError* error) {
  const std::string typeText(type.utf8());
  if (!mValid || mChoice != nullptr || avahi_is_valid_service_type_strict(typeText.c_str()) == 0) {
    if (error != nullptr) *error = kUnknownError;
    return false;
  }
  mType = typeText;
  mDomain = domain.utf8();
  mServices.clear();
  mChoice = std::make_unique<ResponderChoice>(mRunLoop, *this);
  mChoice->start();
  return true;
}

void AvahiBrowser::stopSearch(StreamError*) { stop(); }

void AvahiBrowser::invalidate() {
  mValid = false;
  stop();
}

// The services stay as long as the browser, but nobody answers them any more.
void AvahiBrowser::stop() {
  mDeferred.cancel();
  mEvents.clear();
  mCarryOverTimer.reset();
  mCarryingOver = false;
  mBrowse.reset();
  for (const auto& [name, service] : mServices) {
    service->cancel();
    service->useResponder(nullptr);
  }
  mChoice.reset();
}

void AvahiBrowser::responderChanged(Responder* responder) {
  if (mStatus != nullptr) mStatus->change(mChoice->searcher());
  mBrowse.reset();
  mCarryOverTimer.reset();
  for (const auto& [name, service] : mServices) service->useResponder(responder);
  mCarryingOver = !mServices.empty();
  if (responder == nullptr) return;
  mBrowse = std::make_unique<DomainBrowses>(*responder, mType, mDomain, *this);
  if (!mBrowse->started()) browsingFailed();
}

void AvahiBrowser::noResponder() {
  removeUnannounced();
  tell({0, nullptr});
}

void AvahiBrowser::appeared(const ServiceName& service, Place place) {
  auto& known = mServices[service];
  if (known == nullptr) {
    known = newService(service);
    known->useResponder(mChoice->current());
    tell({0, known});
  }
  known->addPlace(place);
}

void AvahiBrowser::disappeared(const ServiceName& service, Place place) {
  const auto known = mServices.find(service);
  if (known == mServices.end()) return;
  known->second->removePlace(place);
  if (known->second->isAnnounced()) return;
  tell({kServiceFlagRemove, std::move(known->second)});
  mServices.erase(known);
}

void AvahiBrowser::allForNow() {
  if (!std::exchange(mCarryingOver, false)) return;
  mCarryOverTimer = mRunLoop.startTimer(kCarryOver, false, [this] {
    mCarryOverTimer.reset();
    removeUnannounced();
    for (const auto& [name, service] : mServices) service->confirm();
  });
}

void AvahiBrowser::browsingFailed() {
  mDeferred.post([this] { mChoice->refused(); });
}

std::shared_ptr<AvahiService> AvahiBrowser::newService(const ServiceName& name) {
  const bool first = !mAskedFirst.empty() && name.name.find(mAskedFirst) != std::string::npos;
  return std::make_shared<AvahiService>(mRunLoop, mQueue, name, first ? kAskedFirst : kAskedThen,
                                        [this, name] { replace(name); });
}

void AvahiBrowser::replace(const ServiceName& name) {
  auto& known = mServices.at(name);
  const auto before = std::exchange(known, newService(name));
  known->takePlaces(*before);
  tell({kServiceFlagRemove, before});
  tell({0, known});
}

void AvahiBrowser::removeUnannounced() {
  std::erase_if(mServices, [this](auto& known) {
    if (known.second->isAnnounced()) return false;
    tell({kServiceFlagRemove, std::move(known.second)});
    return true;
  });
}

void AvahiBrowser::tell(Event event) {
  mEvents.push_back(std::move(event));
  if (mEvents.size() == 1) mDeferred.post([this] { deliver(); });
}

// The product's callback may stop the search, or destroy this browser: each event is told by a call
// of its own, which then does not come.
void AvahiBrowser::deliver() {
  if (!mScheduled || mEvents.empty()) return;
  const Event event = std::move(mEvents.front());
  mEvents.pop_front();
  unsigned long flags = event.flags;
  if (!mEvents.empty()) {
    flags |= kServiceFlagMoreComing;
    mDeferred.post([this] { deliver(); });
  }
  StreamError error = event.service == nullptr ? kUnknownError : StreamError{};
  mCallback(this, flags, event.service.get(), &error, mInfo);
}

}  // namespace platform
