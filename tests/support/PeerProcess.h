// A program that runs on one of the machines of the private network, from construction to
// destruction, and is spoken to line by line.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class PeerProcess {
 public:
  enum class Machine { Here, Peer };

  PeerProcess(const std::string& program, std::vector<std::string> arguments, Machine machine);
  ~PeerProcess();
  PeerProcess(const PeerProcess&) = delete;
  PeerProcess& operator=(const PeerProcess&) = delete;

  pid_t pid() const { return mProcess; }

  // Readable when there is something to read, and at the end.
  int output() const { return mOutput; }

  // Blocks until there is a whole line; at the end returns what there is.
  std::string readLine();

  void writeLine(const std::string& line);

  // Returns when the program has ended, or had ended before.
  void end(int signal);

 private:
  pid_t mProcess = -1;
  int mInput = -1;
  int mOutput = -1;
};
