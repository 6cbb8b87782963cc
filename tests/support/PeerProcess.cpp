#include "PeerProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <utility>

#include "Places.h"

PeerProcess::PeerProcess(const std::string& program, std::vector<std::string> arguments,
                         Machine machine) {
  std::vector<std::string> command = std::move(arguments);
  command.insert(command.begin(), program);
  if (machine == Machine::Peer)
    command.insert(command.begin(), {projectFile("tools/private-network"), "--on-peer"});
  std::vector<char*> words;
  for (std::string& word : command) words.push_back(word.data());
  words.push_back(nullptr);

  int input[2];
  int output[2];
  if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe left");
  }
  mProcess = fork();
  if (mProcess == 0) {
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    execv(words[0], words.data());
    _exit(127);
  }
  close(input[0]);
  close(output[1]);
  mInput = input[1];
  mOutput = output[0];
}

PeerProcess::~PeerProcess() {
  end(SIGTERM);
  close(mInput);
  close(mOutput);
}

std::string PeerProcess::readLine() {
  std::string line;
  for (char character = 0; read(mOutput, &character, 1) == 1 && character != '\n';) {
    line.push_back(character);
  }
  return line;
}

void PeerProcess::writeLine(const std::string& line) {
  const std::string bytes = line + "\n";
  if (write(mInput, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("nobody listens to: " + line);
  }
}

void PeerProcess::end(int signal) {
  if (mProcess < 0) return;
  kill(mProcess, signal);
  waitpid(mProcess, nullptr, 0);
  mProcess = -1;
}
