// A command that a person runs in a shell of a terminal, and the screen that the person looks at.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "TerminalScreen.h"

class TerminalProcess {
 public:
  // A terminal of its own, with TERM=xterm and a UTF-8 locale; `command` is for sh. The process
  // leads the terminal's session and is in its foreground.
  TerminalProcess(const std::string& command, int rows, int columns);
  ~TerminalProcess();
  TerminalProcess(const TerminalProcess&) = delete;
  TerminalProcess& operator=(const TerminalProcess&) = delete;

  const TerminalScreen& screen() const { return mScreen; }

  // Whether the screen comes to be so, in 20 seconds. Not after the end of the output.
  bool waitUntil(const std::function<bool(const TerminalScreen&)>& isSo);

  // The same for a text in one of its rows.
  bool waitFor(const std::string& text);

  // Waits for its end. The exit status; -1 when a signal ended it.
  int waitForEnd();

  void type(std::string_view keys) const;

  // Whether the terminal shows what is typed.
  bool echoes() const;

  void resize(int rows, int columns);

  void signal(int number) const;

  // All that has arrived from it so far.
  const std::string& bytes() const { return mBytes; }

 private:
  bool readSome(int milliseconds);

  TerminalScreen mScreen;
  std::string mBytes;
  int mTerminal = -1;
  pid_t mProcess = -1;
};
