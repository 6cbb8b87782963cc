// Calls put off until the run loop is back, for an owner that may be gone by then: its calls go
// with it. What a library's callbacks lead to is put off in this way where it may free the very
// objects that are calling.
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
