// The tool's one loop: file descriptors, timers and what Avahi asks for, on one thread. Implemented
// on Avahi's own simple poll, so that its clients run on it directly.
#pragma once

#include <functional>
#include <memory>

#include "Scheduler.h"

struct AvahiPoll;
struct AvahiSimplePoll;

namespace virtualprinter {

class EventLoop : public Scheduler {
 public:
  // Destroying a watch, also from its own callback, ends it.
  class Watch {
   public:
    virtual ~Watch() = default;
    // The poll(2) events to wait for; 0 pauses the watch.
    virtual void setEvents(short events) = 0;
  };

  EventLoop();
  ~EventLoop() override;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  // Calls back with the poll(2) events that are ready, as long as they are. The descriptor stays
  // the caller's and must stay open while the watch lives.
  [[nodiscard]] std::unique_ptr<Watch> watch(int descriptor, short events,
                                             std::function<void(short events)> ready);

  std::unique_ptr<Timer> after(std::chrono::microseconds delay,
                               std::function<void()> fired) override;

  // Returns after quit().
  void run();
  void quit();

  const AvahiPoll* avahiPoll() const;

 private:
  AvahiSimplePoll* mPoll;
  bool mQuit = false;
};

}  // namespace virtualprinter
