// The application's event loop: entered once, left by quit(). Callbacks from Qt into the program go
// through guard(), because an exception must not travel through Qt's own frames: the loop ends, and
// run() throws it on to its caller. Needs the QCoreApplication, and outlives everything that runs
// on the loop.
#pragma once

#include <exception>
#include <utility>

namespace platform {

class QtEventLoop {
 public:
  // Returns when quit() has been called; at once where it was called before.
  void run();

  void quit();

  // True from quit() to the return of run(): nothing of the program is called then.
  bool isEnding() const { return mQuit; }

  template <typename Callback>
  void guard(Callback&& callback) noexcept {
    try {
      std::forward<Callback>(callback)();
    } catch (...) {
      endWith(std::current_exception());
    }
  }

 private:
  void endWith(std::exception_ptr exception) noexcept;

  bool mRunning = false;
  bool mQuit = false;
  std::exception_ptr mException;
};

}  // namespace platform
