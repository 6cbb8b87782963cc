// A building full of printers on the other machine of the private network, from construction to
// destruction: a process of its own. See the crowd program's help for its options and orders.
#pragma once

#include <string>
#include <vector>

#include "PeerProcess.h"

class Crowd {
 public:
  // Returns when the crowd answers; throws std::runtime_error when it does not come to that.
  explicit Crowd(std::vector<std::string> arguments);

  // Throws std::runtime_error when it is not obeyed.
  void order(const std::string& order);

  void withdraw();  // all of them say goodbye
  void vanish();    // nobody does

  pid_t pid() const { return mProcess.pid(); }

 private:
  PeerProcess mProcess;
};
