// Keeps the computer awake while it lives: logind neither suspends nor shuts down, and ignores the
// lid. Held by a descriptor that logind gives for it, so that it ends with this object or with the
// process, whatever ends that. Where less is permitted, as much as is. Nothing waits for logind or
// for its bus, and what the bus does later does not end the lock.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"
#include "platform/dbus/BusConnection.h"

namespace platform {

// What users are shown who ask what keeps their computer from sleeping. UTF-8.
struct PowerLockTexts {
  std::string who;
  std::string why;
};

class SleepLock : private BusConnection::Listener {
 public:
  // An entry for the log.
  using Report = std::function<void(const std::string& entry)>;

  // The lock is asked for when the run loop is back. `report` is called from there, at most once:
  // where not all is locked.
  SleepLock(RunLoop& runLoop, PowerLockTexts texts, Report report);

 private:
  void connect();
  void askFor(std::size_t choice);
  void answered(std::size_t choice, DBusMessage* reply);
  void reportOnce(const std::string& entry);

  void signalled(DBusMessage*) override {}
  void closed() override;

  RunLoop& mRunLoop;
  const PowerLockTexts mTexts;
  Report mReport;        // null when it has been called
  std::string mRefusal;  // of the first choice
  BusMessage mLock;      // the reply, which has the descriptor
  BusConnection mBus;
  std::unique_ptr<RunLoop::Timer> mPatience;
  DeferredCalls mDeferred;
};

}  // namespace platform
