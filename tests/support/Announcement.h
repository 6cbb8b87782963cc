// A service that a process of its own announces on the private network, as a printer would, from
// construction to destruction. See announce.cpp for its options.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class Announcement {
 public:
  enum class Machine { Here, Peer };

  // `arguments` are those of the announcing program. Returns before the name is established.
  explicit Announcement(std::vector<std::string> arguments, Machine machine = Machine::Peer);
  ~Announcement();
  Announcement(const Announcement&) = delete;
  Announcement& operator=(const Announcement&) = delete;

  // Blocks until the network has accepted the name. Throws std::runtime_error when it does not.
  void waitUntilEstablished();

  // Readable as soon as the name is established.
  int output() const { return mOutput; }

  void withdraw();  // says goodbye
  void vanish();    // does not

 private:
  void end(int signal);

  pid_t mProcess = -1;
  int mOutput = -1;
};
