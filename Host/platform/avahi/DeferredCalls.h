// Calls put off until the run loop is back, for an owner that may be gone by then: its calls go
// with it. Avahi's callbacks put their work off in this way, because what they lead to may free the
// very Avahi objects that are calling.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/RunLoop.h"

namespace platform {

class DeferredCalls {
 public:
  explicit DeferredCalls(RunLoop& runLoop) : mRunLoop(runLoop) {}
  DeferredCalls(const DeferredCalls&) = delete;
  DeferredCalls& operator=(const DeferredCalls&) = delete;

  void post(std::function<void()> call) {
    mRunLoop.callLater([call = std::move(call), owner = std::weak_ptr(mOwner)] {
      if (!owner.expired()) call();
    });
  }

  // None of the calls put off so far comes.
  void cancel() { mOwner = std::make_shared<Owner>(); }

 private:
  struct Owner {};

  RunLoop& mRunLoop;
  std::shared_ptr<Owner> mOwner = std::make_shared<Owner>();
};

}  // namespace platform
