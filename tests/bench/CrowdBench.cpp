// How the window finds its printers in a building full of them, beside avahi-browse in the same
// run: until when all printers of our make are listed, and what that costs. On one link and on two,
// with the daemon as Debian configures it and without.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "ChildProcess.h"
#include "Crowd.h"
#include "Places.h"
#include "Plot.h"
#include "PrivateNetwork.h"
#include "ProcessState.h"
#include "Screen.h"
#include "TemporaryDirectory.h"
#include "VirtualDesktop.h"
#include "WindowPing.h"

namespace {

using namespace std::chrono_literals;
using bench::Clock;
using bench::ProcessState;

constexpr auto kLimit = 30s;
constexpr auto kTurn = 2ms;
constexpr auto kAfterwards = 1s;  // rows are painted after they are told

struct Setting {
  unsigned services = 0;
  unsigned links = 1;
  bool withDaemon = true;

  unsigned ours() const { return services / 4; }
};

struct Result {
  std::size_t listed = 0;
  double seconds = 0;
  ProcessState program;
  ProcessState daemon;
  double slowestAnswer = 0;  // milliseconds
  std::size_t refused = 0;
  std::uint64_t lost = 0;  // packets for which the daemon's, or the program's, buffers had no room
};

// What a program has written to its file since the last look, line by line.
class Lines {
 public:
  explicit Lines(const std::filesystem::path& file) : mFile(file, std::ios::binary) {}

  void forEachNew(const std::function<void(const std::string&)>& line) {
    mFile.clear();
    char bytes[65536];
    while (mFile.read(bytes, sizeof bytes), mFile.gcount() > 0) {
      mRest.append(bytes, static_cast<std::size_t>(mFile.gcount()));
    }
    for (auto end = mRest.find('\n'); end != std::string::npos; end = mRest.find('\n')) {
      line(mRest.substr(0, end));
      mRest.erase(0, end + 1);
    }
  }

 private:
  std::ifstream mFile;
  std::string mRest;
};

// The last number of each socket in the kernel's tables. 14E9 is the port of multicast DNS.
std::uint64_t packetsLost() {
  std::uint64_t lost = 0;
  for (const char* table : {"/proc/net/udp", "/proc/net/udp6"}) {
    std::ifstream file(table);
    for (std::string line; std::getline(file, line);) {
      line.erase(line.find_last_not_of(' ') + 1);
      if (line.find(":14E9 ") != std::string::npos) {
        lost += std::stoull(line.substr(line.rfind(' ')));
      }
    }
  }
  return lost;
}

class Daemon {
 public:
  explicit Daemon(bool wanted) : mRuns(wanted) {
    if (mRuns) {
      privatenetwork::startDaemon({"ratelimit-interval-usec=1000000", "ratelimit-burst=1000"});
    }
  }
  ~Daemon() {
    if (mRuns) privatenetwork::stopDaemon();
  }
  Daemon(const Daemon&) = delete;
  Daemon& operator=(const Daemon&) = delete;

  ProcessState state() const {
    pid_t pid = 0;
    if (!mRuns || !(std::ifstream("/run/private-network/avahi-daemon.pid") >> pid)) return {};
    return ProcessState::of(pid);
  }

 private:
  bool mRuns;
};

class CrowdBench {
 public:
  explicit CrowdBench(const std::string& manner) : mManner(manner) {
    unsetenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
  }

  Result browse(const Setting& setting) {
    const Crowd crowd(argumentsFor(setting));
    const Daemon daemon(true);
    const std::filesystem::path output = mDirectory.path() / "browse";
    const auto began = Clock::now();
    const desktop::ChildProcess browser(
        {"stdbuf", "-oL", "avahi-browse", "--resolve", "--parsable", "_pdl-datastream._tcp"},
        output);
    Lines lines(output);
    std::set<std::string> listed;
    Result result;
    const auto look = [&] {
      lines.forEachNew([&](const std::string& line) {
        if (const auto name = resolvedPrinter(line)) listed.insert(*name);
        if (line.find("Too many objects") != std::string::npos) ++result.refused;
      });
      return listed.size();
    };
    waitForAll(setting, began, look, result);
    result.program = ProcessState::of(browser.pid());
    result.daemon = daemon.state();
    result.lost = packetsLost();
    return result;
  }

  Result show(const Setting& setting) {
    const Crowd crowd(argumentsFor(setting));
    const Daemon daemon(setting.withDaemon);
    const std::filesystem::path refusals = mDirectory.path() / "refusals";
    const desktop::ChildProcess monitor(
        {"dbus-monitor", "--system", "type='error',sender='org.freedesktop.Avahi'"}, refusals);
    const std::filesystem::path log = mDirectory.path() / "log";
    bench::Screen screen;
    const auto began = Clock::now();
    const desktop::ChildProcess program({builtProgram("fwupdate"), "-e"}, log);
    screen.waitForActiveWindow(program.pid());
    bench::WindowPing ping(screen.window());
    Lines lines(log);
    Result result;
    std::size_t listed = 0;
    const auto look = [&] {
      ping.turn();
      lines.forEachNew([&](const std::string& line) {
        if (line.find("Adding printer with ID=") != std::string::npos) ++listed;
      });
      return listed;
    };
    waitForAll(setting, began, look, result);
    result.program = ProcessState::of(program.pid());
    result.daemon = daemon.state();
    result.lost = packetsLost();
    for (const auto end = Clock::now() + kAfterwards; Clock::now() < end;) {
      look();
      std::this_thread::sleep_for(kTurn);
    }
    result.slowestAnswer = bench::milliseconds(ping.slowest());
    Lines(refusals).forEachNew([&](const std::string& line) {
      if (line.find("TooMany") != std::string::npos) ++result.refused;
    });
    return result;
  }

 private:
  std::vector<std::string> argumentsFor(const Setting& setting) const {
    std::vector<std::string> arguments{"--count", std::to_string(setting.services), "--ours",
                                       std::to_string(setting.ours())};
    for (unsigned link = 0; link < setting.links; ++link) {
      arguments.insert(arguments.end(), {"--link", "net" + std::to_string(link)});
    }
    if (!mManner.empty()) arguments.push_back(mManner);
    return arguments;
  }

  // =;interface;protocol;name;type;domain;host;address;port;txt
  static std::optional<std::string> resolvedPrinter(const std::string& line) {
    if (!line.starts_with("=;") || line.find(";10.10") == std::string::npos) return std::nullopt;
    const auto name = line.find("Printer\\032");
    if (name == std::string::npos) return std::nullopt;
    return line.substr(name, line.find(';', name) - name);
  }

  static void waitForAll(const Setting& setting, Clock::time_point began,
                         const std::function<std::size_t()>& look, Result& result) {
    while ((result.listed = look()) < setting.ours() && Clock::now() - began < kLimit) {
      std::this_thread::sleep_for(kTurn);
    }
    result.seconds = bench::milliseconds(Clock::now() - began) / 1000;
  }

  std::string mManner;  // of the crowd, an option of its own
  TemporaryDirectory mDirectory;
  desktop::VirtualDesktop mDesktop{mDirectory.path()};
};

void print(const Setting& setting, const char* who, const Result& result) {
  std::printf("%5u %5u  %-24s %5zu/%-5u %6.2f %8.2f %8.2f %8.1f %8.1f", setting.services,
              setting.links, who, result.listed, setting.ours(), result.seconds,
              result.program.cpuMilliseconds / 1000, result.daemon.cpuMilliseconds / 1000,
              result.program.peakMiB, result.daemon.peakMiB);
  if (result.slowestAnswer > 0) {
    std::printf(" %9.0f", result.slowestAnswer);
  } else {
    std::printf(" %9s", "");
  }
  std::printf(" %8zu %8ju\n", result.refused, std::uintmax_t{result.lost});
  std::fflush(stdout);
}

void addTo(bench::Line& time, bench::Line& cost, const Setting& setting, const Result& result) {
  const double services = setting.services;
  time.points.push_back({services, result.seconds, result.listed < setting.ours()});
  cost.points.push_back({services,
                         (result.program.cpuMilliseconds + result.daemon.cpuMilliseconds) / 1000,
                         result.listed < setting.ours()});
}

void measure(CrowdBench& bench, const std::vector<unsigned>& sizes, const std::string& plotFile) {
  std::printf("\n%-38s %11s %6s %8s %8s %8s %8s %9s %8s %8s\n", "services, links",  //
              "listed", "s", "CPU s", "daemon's", "MiB", "daemon's", "answer ms", "refused",
              "lost");
  bench::Plot time{
      "Seconds until all printers of our make are listed (ring: not in 30 s)", "services", {}};
  bench::Plot cost{"CPU seconds of program and daemon until then", "services", {}};
  for (const unsigned links : {1u, 2u}) {
    const std::string on = links == 1 ? ", one link" : ", two links";
    bench::Line times[] = {
        {"avahi-browse" + on, {}}, {"with daemon" + on, {}}, {"without" + on, {}}};
    bench::Line costs[] = {times[0], times[1], times[2]};
    for (const unsigned services : sizes) {
      const Setting withDaemon{services, links, true};
      const Setting without{services, links, false};
      const Result browsed = bench.browse(withDaemon);
      print(withDaemon, "avahi-browse --resolve", browsed);
      addTo(times[0], costs[0], withDaemon, browsed);
      const Result shown = bench.show(withDaemon);
      print(withDaemon, "fwupdate with daemon", shown);
      addTo(times[1], costs[1], withDaemon, shown);
      const Result alone = bench.show(without);
      print(without, "fwupdate without", alone);
      addTo(times[2], costs[2], without, alone);
    }
    time.lines.insert(time.lines.end(), std::begin(times), std::end(times));
    cost.lines.insert(cost.lines.end(), std::begin(costs), std::end(costs));
  }
  bench::writePlots(plotFile, {time, cost});
  std::printf("Plot: %s\n", plotFile.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  privatenetwork::enter(argc, argv, {"--no-daemon", "--links", "2"});
  std::string manner;
  std::vector<unsigned> sizes;
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]).starts_with("--")) {
      manner = argv[i];
    } else {
      sizes.push_back(static_cast<unsigned>(std::stoul(argv[i])));
    }
  }
  if (sizes.empty()) sizes = {100, 300, 1000, 2000};
  CrowdBench bench(manner);
  measure(bench, sizes, builtFile("bench-crowd.svg"));
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "bench-crowd: " << error.what() << '\n';
  return EXIT_FAILURE;
}
