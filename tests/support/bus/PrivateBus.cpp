#include "PrivateBus.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

std::string environmentOf(const std::string& variable) {
  const char* const value = std::getenv(variable.c_str());
  return value == nullptr ? "" : value;
}

}  // namespace

PrivateBus::PrivateBus(Kind kind)
    : mVariable(kind == Kind::System ? "DBUS_SYSTEM_BUS_ADDRESS" : "DBUS_SESSION_BUS_ADDRESS"),
      mBefore(environmentOf(mVariable)) {
  const std::string address = "unix:path=" + (mDirectory.path() / "bus").string();
  std::ofstream(mDirectory.path() / "bus.conf")
      << R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>)"
      << address << R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
)";
  setenv(mVariable.c_str(), address.c_str(), 1);
  start();
}

PrivateBus::~PrivateBus() {
  stop();
  if (mBefore.empty()) {
    unsetenv(mVariable.c_str());
  } else {
    setenv(mVariable.c_str(), mBefore.c_str(), 1);
  }
}

// It ends with this process, whatever ends that.
void PrivateBus::start() {
  mDaemon = std::make_unique<PeerProcess>(
      "/usr/bin/setpriv",
      std::vector<std::string>{"--pdeathsig", "KILL", "dbus-daemon",
                               "--config-file=" + (mDirectory.path() / "bus.conf").string(),
                               "--nofork", "--nosyslog", "--nopidfile", "--print-address"},
      PeerProcess::Machine::Here);
  mDaemon->readLine();  // its address
}

// It may be a stopped one.
void PrivateBus::stop() {
  if (mDaemon != nullptr) mDaemon->end(SIGKILL);
  mDaemon.reset();
  std::filesystem::remove(mDirectory.path() / "bus");
}

void PrivateBus::signal(int number) const { kill(mDaemon->pid(), number); }
