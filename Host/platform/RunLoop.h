// The one loop of the one thread: everything asynchronous arrives through it. Callbacks run between
// events, never inside the call that asked for them. Destroying a Watch or a Timer, also from its
// own callback, ends it: nothing is called afterwards.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

class RunLoop {
 public:
  enum class Interest { Readable, Writable };

  class Watch {
   public:
    virtual ~Watch() = default;
    // A watch starts enabled.
    virtual void setEnabled(bool enabled) = 0;
  };

  class Timer {
   public:
    virtual ~Timer() = default;
  };

  virtual ~RunLoop() = default;

  // Calls back while `descriptor` is ready (level-triggered). The descriptor stays the caller's and
  // must stay open while the watch lives.
  virtual std::unique_ptr<Watch> watch(int descriptor, Interest interest,
                                       std::function<void()> ready) = 0;

  virtual std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay, bool repeating,
                                            std::function<void()> fired) = 0;

  // Calls back once, after the current event, in the order of the calls.
  virtual void callLater(std::function<void()> callback) = 0;

  // Returns when `descriptor` is ready (true) or the time is over. Nothing that was asked of this
  // loop is called meanwhile, and no event reaches the program: it comes afterwards, in the order
  // in which it arose; a repeating timer fires once for all of the time. What is none of the
  // program's business goes on: windows are painted, assistive technology is answered. Not to be
  // called from inside itself.
  virtual bool waitUntilReady(int descriptor, Interest interest,
                              std::chrono::steady_clock::time_point deadline) = 0;
};

}  // namespace platform
