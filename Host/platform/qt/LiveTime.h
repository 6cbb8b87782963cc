// A clock that counts only while the program gets round to its events. What is pressed while it
// stands still waits in a queue and arrives late: by this clock, no time has passed meanwhile, but
// for a fifth of a second.
//
// It counts for some seconds after each question and wakes the program up for that; then it rests
// until it is asked again. Needs the QCoreApplication.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <chrono>
#include <functional>

namespace platform {

class LiveTime : public QObject {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit LiveTime(std::function<Time()> now = std::chrono::steady_clock::now);

  Time now();
  bool isCounting() const { return mTimer.isActive(); }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void count();

  std::function<Time()> mNow;
  QBasicTimer mTimer;
  int mCountsLeft = 0;
  Time mLastCount;
  Time mLiveTime;
};

}  // namespace platform
