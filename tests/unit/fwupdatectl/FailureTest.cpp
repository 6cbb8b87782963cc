#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <array>
#include <string>

#include "failure.h"

namespace {

// What becomes of standard error while one lives is read from the other end of a terminal.
class TerminalAsStandardError {
 public:
  TerminalAsStandardError() {
    int terminal = -1;
    EXPECT_EQ(openpty(&mReader, &terminal, nullptr, nullptr, nullptr), 0);
    fcntl(mReader, F_SETFL, O_NONBLOCK);
    dup2(terminal, STDERR_FILENO);
    close(terminal);
  }
  ~TerminalAsStandardError() {
    dup2(mBefore, STDERR_FILENO);
    close(mBefore);
    close(mReader);
  }
  TerminalAsStandardError(const TerminalAsStandardError&) = delete;
  TerminalAsStandardError& operator=(const TerminalAsStandardError&) = delete;

  std::string read() const {
    std::array<char, 64> bytes{};
    const ssize_t size = ::read(mReader, bytes.data(), bytes.size());
    return {bytes.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
  }

 private:
  const int mBefore = dup(STDERR_FILENO);
  int mReader = -1;
};

// The terminal shows what was typed to interrupt: ^C. The shell's next prompt stands below it.
TEST(FailByInterruption, BeginsARowOnATerminal) {
  const TerminalAsStandardError terminal;
  EXPECT_EQ(failByInterruption(Options::Output::Text), 130);
  EXPECT_EQ(terminal.read(), "\r\n");
}

}  // namespace
