// From a printer's announcement to its row, beside avahi-browse in the same run: how much later
// than the line of avahi-browse the program logs the printer, and has its row on the screen.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "Announcement.h"
#include "ChildProcess.h"
#include "Figures.h"
#include "Places.h"
#include "PrivateNetwork.h"
#include "Screen.h"
#include "TemporaryDirectory.h"
#include "VirtualDesktop.h"

namespace {

using namespace std::chrono_literals;
using bench::Clock;

constexpr int kRuns = 11;

// A command whose output is read as it comes.
class Watched {
 public:
  Watched(const std::vector<std::string>& command, const std::filesystem::path& pipe)
      : mOutput(makePipe(pipe)), mProcess(command, pipe) {}
  ~Watched() { close(mOutput); }

  pid_t pid() const { return mProcess.pid(); }
  int output() const { return mOutput; }

  // True when what has come since forget() has `text`.
  bool hasSaid(const std::string& text) {
    char buffer[4096];
    for (ssize_t count; (count = read(mOutput, buffer, sizeof buffer)) > 0;) {
      mSaid.append(buffer, static_cast<std::size_t>(count));
    }
    return mSaid.find(text) != std::string::npos;
  }
  void forget() { mSaid.clear(); }

 private:
  static int makePipe(const std::filesystem::path& pipe) {
    if (mkfifo(pipe.c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    return open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  }

  int mOutput;
  desktop::ChildProcess mProcess;
  std::string mSaid;
};

struct Arrival {
  std::optional<Clock::time_point> browsed;
  std::optional<Clock::time_point> logged;
  std::optional<Clock::time_point> shown;

  bool isComplete() const { return browsed && logged && shown; }
};

class DiscoveryBench {
 public:
  DiscoveryBench() { mScreen.waitForActiveWindow(mProgram.pid()); }

  Arrival announce(int number) {
    mScreen.lastPainted();
    const bench::Screen::Picture before = mScreen.picture();
    const std::string name = "Printer" + std::to_string(number);
    Arrival arrival;
    {
      const Announcement printer({name, "usb_MFG=Veltra", "usb_MDL=KX350T"});
      const auto deadline = Clock::now() + 20s;
      while (!arrival.isComplete()) {
        if (Clock::now() > deadline) throw std::runtime_error(name + " does not appear");
        look(name, before, arrival);
      }
    }
    waitUntilGone(before);
    return arrival;
  }

 private:
  void look(const std::string& name, const bench::Screen::Picture& before, Arrival& arrival) {
    pollfd outputs[] = {{mBrowser.output(), POLLIN, 0}, {mProgram.output(), POLLIN, 0}};
    poll(outputs, 2, 1);
    const auto now = Clock::now();
    if (!arrival.browsed && mBrowser.hasSaid("=;net0;IPv4;" + name + ";")) arrival.browsed = now;
    if (!arrival.logged && mProgram.hasSaid("Adding printer with ID=")) arrival.logged = now;
    if (!arrival.shown && mScreen.picture() != before) arrival.shown = Clock::now();
  }

  void waitUntilGone(const bench::Screen::Picture& before) {
    if (!desktop::waitUntil([&] { return mScreen.picture() == before; }, 20s)) {
      throw std::runtime_error("the row stays");
    }
    mBrowser.hasSaid("");
    mBrowser.forget();
    mProgram.hasSaid("");
    mProgram.forget();
  }

  TemporaryDirectory mDirectory;
  desktop::VirtualDesktop mDesktop{mDirectory.path()};
  bench::Screen mScreen;
  Watched mBrowser{{"avahi-browse", "--resolve", "--parsable", "_pdl-datastream._tcp"},
                   mDirectory.path() / "browser"};
  Watched mProgram{
      {"env", "-u", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", builtProgram("fwupdate"), "-e"},
      mDirectory.path() / "program"};
};

}  // namespace

int main(int argc, char** argv) try {
  privatenetwork::enter(argc, argv, {});
  DiscoveryBench bench;
  bench.announce(0);
  bench::Samples logged;
  bench::Samples shown;
  for (int i = 1; i <= kRuns; ++i) {
    const Arrival arrival = bench.announce(i);
    logged.push_back(bench::milliseconds(*arrival.logged - *arrival.browsed));
    shown.push_back(bench::milliseconds(*arrival.shown - *arrival.browsed));
  }
  bench::printHeading("A printer is announced: later than avahi-browse, " + std::to_string(kRuns) +
                      " runs");
  bench::printFigure("fwupdate logs the printer", logged, "ms", "30");
  bench::printFigure("fwupdate has its row on the screen", shown, "ms", "30");
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-discovery: " << error.what() << '\n';
  return EXIT_FAILURE;
}
