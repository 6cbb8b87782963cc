#include "platform/systemd/SystemdEvents.h"

#include <utility>

#include "platform/RunLoop.h"
#include "platform/systemd/SystemdEventLoop.h"

namespace platform {

void SystemdEvents::runApplicationEventLoop() {
  beginRun();
  mLoop.run();
}

void SystemdEvents::quitApplicationEventLoop() { mLoop.quit(); }

void SystemdEvents::callLater(std::function<void()> callback) {
  mRunLoop.callLater(std::move(callback));
}

}  // namespace platform
