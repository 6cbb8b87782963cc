// Events and commands of a program without windows. Posted events wait for the loop to run, and are
// dropped with the object.
#pragma once

#include <functional>

#include "platform/QueuedEvents.h"

namespace platform {

class RunLoop;
class SystemdEventLoop;

class SystemdEvents final : public QueuedEvents {
 public:
  // `runLoop` is the one on `loop`; both must outlive the events.
  SystemdEvents(SystemdEventLoop& loop, RunLoop& runLoop) : mLoop(loop), mRunLoop(runLoop) {}

  void runApplicationEventLoop() override;
  void quitApplicationEventLoop() override;

 private:
  void callLater(std::function<void()> callback) override;

  SystemdEventLoop& mLoop;
  RunLoop& mRunLoop;
};

}  // namespace platform
