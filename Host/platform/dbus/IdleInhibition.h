// Asks the desktop not to blank the screen, nor to act on a user who is away: by the desktop's
// portal where there is one, else by its screen saver. The desktop is connected to when that is
// wanted, and only until then given back. A desktop that answers when it is no longer wanted is
// told so: some would keep what they gave to somebody who has left. Nothing waits for it.
#pragma once

#include <memory>

#include "platform/DeferredCalls.h"
#include "platform/RunLoop.h"
#include "platform/dbus/BusConnection.h"
#include "platform/dbus/SleepLock.h"

namespace platform {

class IdleInhibition : private BusConnection::Listener {
 public:
  IdleInhibition(RunLoop& runLoop, PowerLockTexts texts);
  ~IdleInhibition() override;  // ends it
  IdleInhibition(const IdleInhibition&) = delete;
  IdleInhibition& operator=(const IdleInhibition&) = delete;

  void begin();
  void end();

 private:
  void connect();
  void askPortal();
  void askScreenSaver();
  void given(BusMessage giveBackCall);
  void giveBack();

  void signalled(DBusMessage* signal) override;
  void closed() override;

  RunLoop& mRunLoop;
  const PowerLockTexts mTexts;
  bool mWanted = false;
  bool mAsking = false;  // the answer is still to come
  BusMessage mGiveBack;  // the call that ends it; null when nothing was given
  std::unique_ptr<BusConnection> mBus;
  std::unique_ptr<BusConnection> mClosed;  // goes when it is not calling any more
  DeferredCalls mDeferred;
};

}  // namespace platform
