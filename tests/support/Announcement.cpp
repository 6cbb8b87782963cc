#include "Announcement.h"

#include <csignal>
#include <stdexcept>
#include <utility>

Announcement::Announcement(std::vector<std::string> arguments, Machine machine)
    : mProcess(ANNOUNCE, std::move(arguments), machine) {}

void Announcement::waitUntilEstablished() {
  const std::string line = mProcess.readLine();
  if (line != "established") throw std::runtime_error("cannot announce: " + line);
}

void Announcement::withdraw() { mProcess.end(SIGTERM); }

void Announcement::vanish() { mProcess.end(SIGKILL); }
