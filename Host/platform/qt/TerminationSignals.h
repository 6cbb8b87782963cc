// SIGTERM, SIGINT and SIGHUP as a call from the event loop, so that the program ends in good order
// whatever it is doing. A signal that the program was started with ignored (nohup) stays ignored.
// Used by the events; at most one object at a time.
#pragma once

#include <QObject>
#include <array>
#include <csignal>
#include <functional>

namespace platform {

class TerminationSignals {
 public:
  // `arrived` is called from the event loop, once for each signal or for several close together.
  explicit TerminationSignals(std::function<void()> arrived);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  struct Previous {
    int number;
    struct sigaction action;
  };

  std::array<int, 2> mPipe{-1, -1};
  std::array<Previous, 3> mPrevious{{{SIGTERM, {}}, {SIGINT, {}}, {SIGHUP, {}}}};
  std::function<void()> mArrived;
  QObject mContext;
};

}  // namespace platform
