#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <csignal>

ToolProcess::ToolProcess(const std::string& program, const std::string& arguments)
    : mShell("/bin/sh",
             {"-c", "exec 2>&1; (sh -c 'echo $PPID'; exec '" + program + "' " + arguments +
                        " </dev/null); echo status $?"},
             PeerProcess::Machine::Here),
      mProcess(std::stoi(mShell.readLine())) {}

const std::string& ToolProcess::readLine() {
  mLines.push_back(mShell.readLine());
  return mLines.back();
}

void ToolProcess::readUntil(const std::string& line) {
  while (mLines.empty() || mLines.back() != line) {
    ASSERT_NE(readLine(), "") << "ended before: " << line << '\n' << testing::PrintToString(mLines);
  }
}

void ToolProcess::signal(int number) const { ASSERT_EQ(kill(mProcess, number), 0); }
