#include "Announcement.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include "Places.h"

Announcement::Announcement(std::vector<std::string> arguments, Machine machine)
    : mProcess(builtProgram("announce"), std::move(arguments), machine) {}

void Announcement::waitUntilEstablished() {
  const std::string line = mProcess.readLine();
  if (line != "established") throw std::runtime_error("cannot announce: " + line);
}

void Announcement::withdraw() { mProcess.end(SIGTERM); }

void Announcement::vanish() { mProcess.end(SIGKILL); }
