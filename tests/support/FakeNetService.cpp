#include "FakeNetService.h"

#include <chrono>
#include <sstream>
#include <utility>

#include "platform/Platform.h"

using platform::StreamError;
using platform::Text;

FakeNetService::FakeNetService(CallScript& script, Announcement announcement)
    : mScript(script), mAnnouncement(std::move(announcement)) {}

Text FakeNetService::description() const {
  const Text shownName = name();
  return Text::fromUtf8((shownName ? std::string(shownName.utf8()) : "<null>") + "." +
                        mAnnouncement.type + "." + mAnnouncement.domain);
}

Text FakeNetService::name() const { return Text::fromUtf8(mAnnouncement.name); }
Text FakeNetService::type() const { return Text::fromUtf8(mAnnouncement.type); }
Text FakeNetService::domain() const { return Text::fromUtf8(mAnnouncement.domain); }

bool FakeNetService::setClient(Callback callback, void* info) {
  if (!record("setClient", {callback == nullptr ? "none" : "set"})) return false;
  mCallback = callback;
  mInfo = info;
  return true;
}

void FakeNetService::schedule() {
  record("schedule");
  mScheduled = true;
}

void FakeNetService::unschedule() {
  record("unschedule");
  mScheduled = false;
  silence();
}

bool FakeNetService::resolveWithTimeout(double seconds, StreamError* error) {
  std::ostringstream shown;
  shown << seconds;
  if (!record("resolveWithTimeout", {shown.str()}) || mPending != nullptr) {
    *error = {platform::kStreamErrorDomainNetServices, platform::kNetServicesErrorUnknown};
    return false;
  }
  mPending = std::make_shared<bool>();
  if (mAnnouncement.answers) {
    answerLater();
  } else {
    const auto timeout = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::duration<double>(seconds));
    mTimeout = platform::current().runLoop->startTimer(timeout, false, [this] {
      finish({platform::kStreamErrorDomainNetServices, platform::kNetServicesErrorTimeout});
    });
  }
  return true;
}

void FakeNetService::cancel() {
  record("cancel");
  silence();
}

void FakeNetService::silence() {
  mPending.reset();
  mTimeout.reset();
}

platform::Data FakeNetService::txtData() const { return mResolved ? mAnnouncement.txt : nullptr; }

std::shared_ptr<const std::vector<platform::Data>> FakeNetService::addresses() const {
  return mResolved ? mAnnouncement.addresses : nullptr;
}

bool FakeNetService::record(const std::string& call, const std::vector<std::string>& arguments) {
  const auto answer = mScript.record(mAnnouncement.name + "." + call, arguments);
  return !answer || *answer == platform::noErr;
}

void FakeNetService::answerLater() {
  platform::current().runLoop->callLater([this, pending = std::weak_ptr(mPending)] {
    if (pending.expired()) return;
    mResolved = true;
    finish({});
  });
}

void FakeNetService::finish(StreamError error) {
  silence();
  if (mScheduled && mCallback != nullptr) mCallback(this, &error, mInfo);
}
