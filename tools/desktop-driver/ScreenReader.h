// What a screen reader hears from programs while they run: alerts that appear, and bars that tell
// of another value or description. It hears from its making on.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

class ScreenReader {
 public:
  ScreenReader();
  ~ScreenReader();
  ScreenReader(const ScreenReader&) = delete;
  ScreenReader& operator=(const ScreenReader&) = delete;

  // The names that alerts had when they appeared, so far.
  const std::vector<std::string>& alerts();

  // How often a bar told of another value, so far.
  std::size_t values();

  // How often a bar told that it has another description, so far.
  std::size_t descriptions();

 private:
  struct Heard;
  std::unique_ptr<Heard> mHeard;
};

}  // namespace desktop
