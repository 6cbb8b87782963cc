// A run loop and the time that passes on it, for tests that hold for every implementation: those of
// the two programs, Qt's and systemd's, the one on poll(2) and the one that is turned by hand.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "platform/RunLoop.h"

class RunLoopWorld {
 public:
  virtual ~RunLoopWorld() = default;

  virtual platform::RunLoop& runLoop() = 0;

  // Lets everything happen that is due within `time`.
  virtual void runFor(std::chrono::milliseconds time) = 0;

  // False when `done` does not hold within 20 seconds.
  bool runUntil(const std::function<bool()>& done);
};

struct RunLoopImplementation {
  std::string name;
  std::unique_ptr<RunLoopWorld> (*make)();
};

inline void PrintTo(const RunLoopImplementation& implementation, std::ostream* out) {
  *out << implementation.name;
}

std::vector<RunLoopImplementation> runLoopImplementations();

// Those of them that the programs have.
std::vector<RunLoopImplementation> productRunLoops();
