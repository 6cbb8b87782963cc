// The application's event loop: entered once, left by quit(). Callbacks from Qt into the program go
// through call() or callLater(), because an exception must not travel through Qt's own frames: the
// loop ends, and run() throws it on to its caller.
//
// The program may wait for a descriptor in the middle of a callback. The windows are painted and
// assistive technology is answered meanwhile, and nothing else happens: keys, clicks and requests
// to close a window stay in Qt's queue, and what would call the program is put off. It all comes
// afterwards, in the order in which it arose.
//
// Needs the QCoreApplication, and outlives everything that runs on the loop.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <utility>

namespace platform {

class QtEventLoop : private QObject {
 public:
  using Callback = std::function<void()>;

  // Returns when quit() has been called; at once where it was called before.
  void run();

  void quit();

  // True from quit() to the return of run(): nothing of the program is called then.
  bool isEnding() const { return mQuit; }

  template <typename Function>
  void guard(Function&& function) noexcept {
    try {
      std::forward<Function>(function)();
    } catch (...) {
      endWith(std::current_exception());
    }
  }

  // Calls now or, while the program waits, later.
  void call(Callback callback);

  // Calls after the current event, in the order of these calls.
  void callLater(Callback callback);

  // Returns when the descriptor is ready (true) or the time is over. The program waits meanwhile,
  // and does so once at a time.
  bool waitUntilReady(int descriptor, QSocketNotifier::Type type,
                      std::chrono::steady_clock::time_point deadline);

  bool isWaiting() const { return mWaiting; }

 private:
  bool event(QEvent* received) override;
  void askForTurn();
  void endWith(std::exception_ptr exception) noexcept;

  bool mRunning = false;
  bool mQuit = false;
  std::exception_ptr mException;
  std::deque<Callback> mPutOff;
  bool mWaiting = false;
  int mMissedTurns = 0;  // of calls that were put off, while the program waited
};

}  // namespace platform
