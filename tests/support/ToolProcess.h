// A program as a shell runs it in the foreground of a terminal, so that it heeds every signal. The
// shell says its process ID first and its exit status last.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "PeerProcess.h"

class ToolProcess {
 public:
  // `arguments` as a shell reads them. What goes to standard error is read with the rest.
  ToolProcess(const std::string& program, const std::string& arguments);

  // The next line; at the end, an empty one.
  const std::string& readLine();

  // Fails the test where it ends before.
  void readUntil(const std::string& line);

  void signal(int number) const;

  pid_t pid() const { return mProcess; }

  // What has been read so far.
  const std::vector<std::string>& lines() const { return mLines; }

 private:
  PeerProcess mShell;
  pid_t mProcess;
  std::vector<std::string> mLines;
};
