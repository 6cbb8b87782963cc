// Lines that another process writes, as they come.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/RunLoop.h"

class Pipe {
 public:
  // Throws std::system_error when the host has no descriptors left.
  Pipe();
  ~Pipe();
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  // For the other process. Closed here by startReading().
  int writeEnd() const { return mEnds[1]; }

  // `ready` is called from the loop whenever there is something to take.
  void startReading(platform::RunLoop& runLoop, std::function<void()> ready);

  // Takes what is there, without the ends of the lines. What is written last, without an end,
  // counts as a line; a longer one than kLongestLine is taken in pieces.
  std::vector<std::string> takeLines();

  bool isAtEnd() const { return mWatch == nullptr; }

  static constexpr std::size_t kLongestLine = 65536;  // bytes

 private:
  std::array<int, 2> mEnds{-1, -1};
  std::unique_ptr<platform::RunLoop::Watch> mWatch;
  std::string mRest;
};
