#include "platform/libusb/Notifications.h"

#include <utility>

namespace platform {

void NotificationPort::addTo(RunLoop& runLoop) {
  mRunLoop = &runLoop;
  for (std::function<void()>& notification : std::exchange(mWaiting, {})) {
    post(std::move(notification));
  }
}

void NotificationPort::post(std::function<void()> notification) {
  if (mRunLoop == nullptr) {
    mWaiting.push_back(std::move(notification));
    return;
  }
  mRunLoop->callLater([port = weak_from_this(), notification = std::move(notification)] {
    if (!port.expired()) notification();
  });
}

MatchNotification::MatchNotification(std::weak_ptr<NotificationPort> port,
                                     MatchingDictionary matching,
                                     IOServiceMatchingCallback callback, void* refCon)
    : mPort(std::move(port)),
      mMatching(std::move(matching)),
      mCallback(callback),
      mRefCon(refCon) {}

void MatchNotification::announce(ObjectReference entry) {
  add(std::move(entry));
  const auto port = mPort.lock();
  if (!mArmed || !port) return;
  mArmed = false;
  port->post([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->mCallback(self->mRefCon, self->mNumber);
  });
}

io_object_t MatchNotification::next() {
  const io_object_t number = EntryIterator::next();
  if (number == 0) mArmed = true;
  return number;
}

InterestNotification::InterestNotification(std::weak_ptr<NotificationPort> port,
                                           ObjectReference service,
                                           IOServiceInterestCallback callback, void* refCon)
    : mPort(std::move(port)), mService(std::move(service)), mCallback(callback), mRefCon(refCon) {}

void InterestNotification::sendTerminated() {
  const auto port = mPort.lock();
  if (!port) return;
  port->post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->mCallback(self->mRefCon, self->service(), kIOMessageServiceIsTerminated, nullptr);
  });
}

}  // namespace platform
