// Time, as the printer needs it: call something later. The event loop provides it; a test turns the
// time by hand.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace virtualprinter {

class Scheduler {
 public:
  class Timer {
   public:
    virtual ~Timer() = default;
  };

  virtual ~Scheduler() = default;

  // Calls `fired` once, never from inside this call. Destroying the timer, also from its own
  // callback, cancels it.
  [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::microseconds delay,
                                                     std::function<void()> fired) = 0;
};

}  // namespace virtualprinter
