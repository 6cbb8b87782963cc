// The event loop of a program without windows. Callbacks from systemd's library into the program go
// through guard(), because an exception must not travel through frames of C: the loop ends, and
// run() throws it on to its caller. Outlives everything that runs on the loop.
#pragma once

#include <exception>
#include <memory>
#include <utility>

struct sd_event;

namespace platform {

class SystemdEventLoop {
 public:
  // Throws std::system_error when the host has no descriptors left.
  SystemdEventLoop();

  // Returns when quit() has been called; at once where it was called before.
  void run();

  // Nothing of the program is called between this and the return of run(), which lets one callback
  // run after the other.
  void quit() { mQuit = true; }

  template <typename Callback>
  void guard(Callback&& callback) noexcept {
    try {
      std::forward<Callback>(callback)();
    } catch (...) {
      endWith(std::current_exception());
    }
  }

  sd_event* get() const { return mEvent.get(); }

 private:
  struct Unref {
    void operator()(sd_event* event) const;
  };

  void endWith(std::exception_ptr exception) noexcept;

  std::unique_ptr<sd_event, Unref> mEvent;
  bool mQuit = false;
  std::exception_ptr mException;
};

}  // namespace platform
