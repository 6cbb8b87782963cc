// A service that a process of its own announces on the private network, as a printer would, from
// construction to destruction. See announce/main.cpp for its options.
#pragma once

#include <string>
#include <vector>

#include "PeerProcess.h"

class Announcement {
 public:
  using Machine = PeerProcess::Machine;

  // `arguments` are those of the announcing program. Returns before the name is established.
  explicit Announcement(std::vector<std::string> arguments, Machine machine = Machine::Peer);

  // Blocks until the network has accepted the name. Throws std::runtime_error when it does not.
  void waitUntilEstablished();

  // Readable as soon as the name is established.
  int output() const { return mProcess.output(); }

  void withdraw();  // says goodbye
  void vanish();    // does not

 private:
  PeerProcess mProcess;
};
