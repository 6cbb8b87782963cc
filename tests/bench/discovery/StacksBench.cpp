// How soon the platform side finds and resolves a printer, by the daemon and by the stack in this
// process, without a window. On a private network with the printers on its other machine.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Announcement.h"
#include "BrowserRecorder.h"
#include "PollRunLoop.h"
#include "PrivateNetwork.h"
#include "platform/avahi/AvahiServiceDiscovery.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

double millisecondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

void print(const char* what, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  std::printf("%-66s median %7.1f ms   from %7.1f to %7.1f ms   (%zu times)\n", what,
              times[times.size() / 2], times.front(), times.back(), times.size());
  std::fflush(stdout);
}

// avahi-browse, and when it has resolved which service to an IPv4 address.
class AvahiBrowse {
 public:
  explicit AvahiBrowse(PollRunLoop& runLoop) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe left");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    std::string words[] = {"stdbuf",    "-oL",        "avahi-browse",
                           "--resolve", "--parsable", "_pdl-datastream._tcp"};
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    if (posix_spawnp(&mProcess, "stdbuf", &actions, nullptr, arguments.data(), environ) != 0) {
      throw std::runtime_error("avahi-browse cannot be run");
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    mOutput = ends[0];
    fcntl(mOutput, F_SETFL, O_NONBLOCK);
    mWatch = runLoop.watch(mOutput, platform::RunLoop::Interest::Readable, [this] { read(); });
  }
  ~AvahiBrowse() {
    kill(mProcess, SIGTERM);
    waitpid(mProcess, nullptr, 0);
    close(mOutput);
  }
  AvahiBrowse(const AvahiBrowse&) = delete;
  AvahiBrowse& operator=(const AvahiBrowse&) = delete;

  std::map<std::string, Clock::time_point> resolved;  // the first time

 private:
  void read() {
    char bytes[4096];
    const ssize_t size = ::read(mOutput, bytes, sizeof bytes);
    if (size == 0) mWatch->setEnabled(false);
    if (size <= 0) return;
    mText.append(bytes, static_cast<std::size_t>(size));
    for (auto end = mText.find('\n'); end != std::string::npos; end = mText.find('\n')) {
      readLine(mText.substr(0, end));
      mText.erase(0, end + 1);
    }
  }

  // =;interface;protocol;name;type;domain;host;address;port;txt
  void readLine(const std::string& line) {
    if (!line.starts_with("=;") || line.find(";10.91.") == std::string::npos) return;
    const auto name = line.find(';', line.find(';', 2) + 1) + 1;
    resolved.emplace(line.substr(name, line.find(';', name) - name), Clock::now());
  }

  pid_t mProcess = -1;
  int mOutput = -1;
  std::unique_ptr<platform::RunLoop::Watch> mWatch;
  std::string mText;
};

// The user that has no rights at all, where there is one.
class Unprivileged {
 public:
  explicit Unprivileged(bool wanted) : mHolds(wanted && seteuid(65534) == 0) {}
  ~Unprivileged() {
    if (mHolds && seteuid(0) != 0) std::abort();
  }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;

 private:
  bool mHolds;
};

class Bench {
 public:
  // New printers, with our browser and avahi-browse running.
  void measureAnnouncements(int rounds) {
    AvahiBrowse avahiBrowse(mRunLoop);
    BrowserRecorder recorder(*mDiscovery);
    recorder.resolves = true;
    recorder.search();
    mRunLoop.runFor(milliseconds(1500));
    std::vector<double> later;
    for (int i = 0; i < rounds; ++i) {
      const std::string name = "New" + std::to_string(i);
      const Announcement printer({name});
      const Clock::time_point ours = timeOf(recorder, "resolved " + name);
      mRunLoop.runUntil([&] { return avahiBrowse.resolved.contains(name); });
      later.push_back(millisecondsBetween(avahiBrowse.resolved.at(name), ours));
    }
    print("  new printer: resolved later than by avahi-browse --resolve", later);
  }

  // A browser that starts when the printer is there.
  void measureFirstResult(const char* what, int rounds, milliseconds pause,
                          bool unprivileged = false) {
    std::vector<double> found;
    std::vector<double> resolved;
    for (int i = 0; i < rounds; ++i) {
      Announcement printer({"Printer" + std::to_string(i)});
      printer.waitUntilEstablished();
      mRunLoop.runFor(pause);
      const Unprivileged user(unprivileged);
      const Clock::time_point start = Clock::now();
      BrowserRecorder recorder(*mDiscovery);
      recorder.resolves = true;
      recorder.search();
      found.push_back(
          millisecondsBetween(start, timeOf(recorder, "added Printer" + std::to_string(i))));
      resolved.push_back(
          millisecondsBetween(start, timeOf(recorder, "resolved Printer" + std::to_string(i))));
    }
    print((std::string(what) + ": found").c_str(), found);
    print((std::string(what) + ": resolved").c_str(), resolved);
  }

  // New printers, with our browser running alone.
  void measureNew(const char* what, int rounds) {
    BrowserRecorder recorder(*mDiscovery);
    recorder.resolves = true;
    recorder.search();
    mRunLoop.runFor(milliseconds(1500));
    std::vector<double> resolved;
    for (int i = 0; i < rounds; ++i) {
      const std::string name = "Late" + std::to_string(i);
      Announcement printer({name});
      printer.waitUntilEstablished();
      const Clock::time_point established = Clock::now();
      resolved.push_back(millisecondsBetween(established, timeOf(recorder, "resolved " + name)));
    }
    print(what, resolved);
  }

 private:
  Clock::time_point timeOf(BrowserRecorder& recorder, const std::string& line) {
    if (!mRunLoop.runUntil([&] { return recorder.wasTold(line); })) {
      throw std::runtime_error("not told in time: " + line);
    }
    return Clock::now();
  }

  PollRunLoop mRunLoop;
  std::unique_ptr<platform::ServiceDiscovery> mDiscovery =
      platform::makeAvahiServiceDiscovery(mRunLoop);
};

constexpr int kRounds = 15;
constexpr milliseconds kQuiet{2500};

// One may change the environment, which the others must not see.
void inProcessOfItsOwn(const char* title, const std::function<void(Bench&)>& measure) {
  std::printf("%s:\n", title);
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    Bench bench;
    measure(bench);
    _exit(EXIT_SUCCESS);
  }
  waitpid(child, nullptr, 0);
}

}  // namespace

int main(int argc, char** argv) try {
  privatenetwork::enter(argc, argv, {"--no-daemon"});

  inProcessOfItsOwn("Without a daemon, by the stack in this process", [](Bench& bench) {
    bench.measureFirstResult("  program that starts with the printer there", kRounds, kQuiet);
    bench.measureFirstResult("  program that starts right after the printer", kRounds, {});
    bench.measureNew("  new printer: resolved after its announcement", kRounds);
  });
  inProcessOfItsOwn("The same without any rights", [](Bench& bench) {
    bench.measureFirstResult("  program that starts with the printer there", kRounds, kQuiet, true);
  });

  privatenetwork::startDaemon({"[publish]", "disable-publishing=yes"});
  inProcessOfItsOwn("With the daemon", [](Bench& bench) {
    bench.measureFirstResult("  program that starts with the printer there", kRounds, kQuiet);
    bench.measureAnnouncements(kRounds);
  });
  inProcessOfItsOwn(
      "By the stack in this process, beside a daemon without a bus", [](Bench& bench) {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
        bench.measureFirstResult("  program that starts with the printer there", kRounds, kQuiet);
        bench.measureNew("  new printer: resolved after its announcement", kRounds);
      });
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return EXIT_FAILURE;
}
