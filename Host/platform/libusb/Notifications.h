// Notifications of the registry on their way to the product: the port that brings them to a run
// loop, the iterator that is told of new services, and the interest in one service. Objects of the
// registry's table; nothing is called once they, or the port, are gone.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/libusb/RegistryObjects.h"

namespace platform {

class NotificationPort : public UsbNotificationPort,
                         public std::enable_shared_from_this<NotificationPort> {
 public:
  void addTo(RunLoop& runLoop) override;

  // Calls `notification` from the run loop, as soon as there is one.
  void post(std::function<void()> notification);

 private:
  RunLoop* mRunLoop = nullptr;
  std::vector<std::function<void()>> mWaiting;  // until there is a run loop
};

// The port as the product owns it.
class OwnedNotificationPort : public UsbNotificationPort {
 public:
  void addTo(RunLoop& runLoop) override { mPort->addTo(runLoop); }
  const std::shared_ptr<NotificationPort>& port() const { return mPort; }

 private:
  std::shared_ptr<NotificationPort> mPort = std::make_shared<NotificationPort>();
};

class MatchNotification : public EntryIterator,
                          public std::enable_shared_from_this<MatchNotification> {
 public:
  MatchNotification(std::weak_ptr<NotificationPort> port, MatchingDictionary matching,
                    IOServiceMatchingCallback callback, void* refCon);

  const MatchingDictionary& matching() const { return mMatching; }
  void setNumber(io_iterator_t number) { mNumber = number; }

  // Tells of the new entry, unless the iterator has not been read to its end since the last time.
  void announce(ObjectReference entry);

  io_object_t next() override;

 private:
  std::weak_ptr<NotificationPort> mPort;
  MatchingDictionary mMatching;
  IOServiceMatchingCallback mCallback;
  void* mRefCon;
  io_iterator_t mNumber = 0;
  bool mArmed = false;
};

class InterestNotification : public RegistryObject,
                             public std::enable_shared_from_this<InterestNotification> {
 public:
  InterestNotification(std::weak_ptr<NotificationPort> port, ObjectReference service,
                       IOServiceInterestCallback callback, void* refCon);

  io_service_t service() const { return mService.number(); }
  void sendTerminated();

 private:
  std::weak_ptr<NotificationPort> mPort;
  ObjectReference mService;
  IOServiceInterestCallback mCallback;
  void* mRefCon;
};

}  // namespace platform
