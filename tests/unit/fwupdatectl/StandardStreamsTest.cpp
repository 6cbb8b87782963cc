#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>

#include "standardStreams.h"

namespace {

// In a process of its own: the number that a file gets which is opened without these descriptors.
[[noreturn]] void exitWithNextDescriptor(std::initializer_list<int> closed) {
  for (const int each : closed) close(each);
  completeStandardStreams();
  std::_Exit(open("/dev/zero", O_RDONLY) > STDERR_FILENO ? 0 : 1);
}

TEST(StandardStreams, NoFileTakesThePlaceOfOneThatIsClosed) {
  EXPECT_EXIT(exitWithNextDescriptor({STDIN_FILENO}), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(exitWithNextDescriptor({STDOUT_FILENO}), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(exitWithNextDescriptor({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}),
              testing::ExitedWithCode(0), "");
}

}  // namespace
