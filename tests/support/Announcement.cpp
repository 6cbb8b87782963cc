#include "Announcement.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

Announcement::Announcement(std::vector<std::string> arguments, Machine machine) {
  std::vector<std::string> command;
  if (machine == Machine::Peer) command = {PRIVATE_NETWORK, "--on-peer"};
  command.emplace_back(ANNOUNCE);
  command.insert(command.end(), arguments.begin(), arguments.end());

  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe left");
  mProcess = fork();
  if (mProcess == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    std::vector<char*> words;
    for (std::string& word : command) words.push_back(word.data());
    words.push_back(nullptr);
    execv(words[0], words.data());
    _exit(127);
  }
  close(ends[1]);
  mOutput = ends[0];
}

Announcement::~Announcement() {
  withdraw();
  close(mOutput);
}

void Announcement::waitUntilEstablished() {
  std::string line;
  for (char character = 0; read(mOutput, &character, 1) == 1 && character != '\n';) {
    line.push_back(character);
  }
  if (line != "established") throw std::runtime_error("cannot announce: " + line);
}

void Announcement::withdraw() { end(SIGTERM); }

void Announcement::vanish() { end(SIGKILL); }

void Announcement::end(int signal) {
  if (mProcess < 0) return;
  kill(mProcess, signal);
  waitpid(mProcess, nullptr, 0);
  mProcess = -1;
}
