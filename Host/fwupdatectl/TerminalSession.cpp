#include "TerminalSession.h"

#include <termios.h>
#include <unistd.h>

#include "Terminal.h"
#include "TerminalReport.h"
#include "ToolHost.h"

namespace {

// False when it was so already, or the terminal is not this program's now: whose it is has set it
// as it wants it.
bool setEcho(bool isOn) {
  termios mode{};
  if (!isInForeground(STDOUT_FILENO) || tcgetattr(STDOUT_FILENO, &mode) != 0) return false;
  if (((mode.c_lflag & ECHO) != 0) == isOn) return false;
  mode.c_lflag ^= ECHO;
  return tcsetattr(STDOUT_FILENO, TCSANOW, &mode) == 0;
}

}  // namespace

TerminalSession::TerminalSession(ToolHost& host, TerminalReport& report)
    : mHost(host),
      mReport(report),
      mSignals(host.runLoop(), {SIGWINCH, SIGTSTP, SIGCONT},
               [this](int signal) { arrived(signal); }) {
  mIsEchoOff = setEcho(false);
  host.aroundLog([&report] { report.hide(); }, [&report] { report.show(); });
}

TerminalSession::~TerminalSession() {
  mHost.aroundLog({}, {});
  mReport.hide();
  if (mIsEchoOff) setEcho(true);
}

void TerminalSession::arrived(int signal) {
  if (signal == SIGTSTP) {
    stop();
  } else {
    showAgain();
  }
}

// By the signal's own action, which is nothing where no shell could let the program go on.
void TerminalSession::stop() {
  mReport.hide();
  if (mIsEchoOff) setEcho(true);
  sigset_t stopping;
  sigemptyset(&stopping);
  sigaddset(&stopping, SIGTSTP);
  static_cast<void>(raise(SIGTSTP));
  sigprocmask(SIG_UNBLOCK, &stopping, nullptr);
  sigprocmask(SIG_BLOCK, &stopping, nullptr);
  showAgain();
}

void TerminalSession::showAgain() {
  if (setEcho(false)) mIsEchoOff = true;
  mReport.hide();
  mReport.show();
}
