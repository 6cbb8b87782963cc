#include "PrivateNetwork.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "Places.h"

namespace privatenetwork {
namespace {

std::string networkTool() { return projectFile("tools/private-network"); }

[[noreturn]] void execute(std::vector<std::string> command) {
  std::vector<char*> arguments;
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  std::cerr << command[0] << ": " << std::strerror(errno) << '\n';
  _exit(127);
}

bool isListing(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--gtest_list_tests") == 0) return true;
  }
  return false;
}

void call(std::vector<std::string> arguments) {
  const std::string name = arguments[0];
  arguments.insert(arguments.begin(), networkTool());
  if (run(arguments) != 0) throw std::runtime_error("private-network " + name + " failed");
}

}  // namespace

void enter(int argc, char** argv, const std::vector<std::string>& options) {
  if (std::getenv("PRIVATE_NETWORK") != nullptr || isListing(argc, argv)) return;
  std::vector<std::string> command{networkTool()};
  command.insert(command.end(), options.begin(), options.end());
  command.emplace_back("--");
  command.insert(command.end(), argv, argv + argc);
  execute(command);
}

int run(const std::vector<std::string>& command) {
  const pid_t child = fork();
  if (child == 0) execute(command);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    throw std::runtime_error(command[0] + " cannot be run");
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int runOnPeer(std::vector<std::string> command) {
  command.insert(command.begin(), {networkTool(), "--on-peer"});
  return run(command);
}

void startBus() { call({"--start-bus"}); }
void stopBus() { call({"--stop-bus"}); }
void signalBus(const std::string& signal) { call({"--signal-bus", signal}); }

void startDaemon(const std::vector<std::string>& serverOptions) {
  std::vector<std::string> arguments{"--start-daemon"};
  arguments.insert(arguments.end(), serverOptions.begin(), serverOptions.end());
  call(arguments);
}

void stopDaemon(const std::string& signal) { call({"--stop-daemon", signal}); }

void startPeersDaemon() {
  call({"--on-peer", networkTool(), "--start-bus"});
  call({"--on-peer", networkTool(), "--start-daemon"});
}

void restore() { call({"--restore"}); }

}  // namespace privatenetwork
