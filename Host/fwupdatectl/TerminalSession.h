// The terminal on which a report is redrawn, for as long as it lives. What is typed is not shown,
// so that it cannot move what is drawn. The report is hidden while the program is stopped (Ctrl+Z)
// and while the log writes to the terminal, and shown anew when the size has changed.
#pragma once

#include "Signals.h"

class TerminalReport;
class ToolHost;

class TerminalSession {
 public:
  // Both must outlive it.
  TerminalSession(ToolHost& host, TerminalReport& report);
  ~TerminalSession();
  TerminalSession(const TerminalSession&) = delete;
  TerminalSession& operator=(const TerminalSession&) = delete;

 private:
  void arrived(int signal);
  void stop();
  void showAgain();

  ToolHost& mHost;
  TerminalReport& mReport;
  bool mIsEchoOff = false;
  Signals mSignals;
};
