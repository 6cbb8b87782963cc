#include "Crowd.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include "Places.h"

Crowd::Crowd(std::vector<std::string> arguments)
    : mProcess(builtProgram("crowd"), std::move(arguments), PeerProcess::Machine::Peer) {
  const std::string line = mProcess.readLine();
  if (line != "ready") throw std::runtime_error("no crowd: " + line);
}

void Crowd::order(const std::string& order) {
  mProcess.writeLine(order);
  const std::string answer = mProcess.readLine();
  if (answer != "ok") throw std::runtime_error("the crowd says: " + answer);
}

void Crowd::withdraw() { mProcess.end(SIGTERM); }

void Crowd::vanish() { mProcess.end(SIGKILL); }
