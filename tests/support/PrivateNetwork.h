// A network of their own for tests that deal with real daemons: see private-network --help. A test
// program enters it as a whole, from its main(), so that each of its tests has one to itself when
// CTest runs them one by one; a fixture restores it for the next test when they run together.
#pragma once

#include <string>
#include <vector>

namespace privatenetwork {

// Continues this program inside a private network, unless it is there already or is only asked to
// list its tests. Exits with 77 where there can be none.
void enter(int argc, char** argv, const std::vector<std::string>& options);

// Runs a command and waits for its end; its exit status.
int run(const std::vector<std::string>& command);
int runOnPeer(std::vector<std::string> command);

// The calls of private-network itself. Each throws std::runtime_error when it fails.
void startBus();
void stopBus();
void signalBus(const std::string& signal);
void startDaemon(const std::vector<std::string>& serverOptions = {});
void stopDaemon(const std::string& signal = "TERM");
void startPeersDaemon();
void restore();

}  // namespace privatenetwork
