// A building full of printers in one process: see the help. It speaks multicast DNS itself: Avahi's
// library, by which the virtual printer and `announce` do it, answers at once, completely, and the
// same to everybody, and these are to be silent, late and contradictory as well. So a stack that
// has nothing in common with the program's is tried, too.
#include <getopt.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "MulticastSockets.h"
#include "Responder.h"
#include "orders.h"

namespace {

using crowd::Time;

constexpr const char* kUsage =
    R"(Usage: crowd [OPTION...] [ORDER...]

Answers for many services of type _pdl-datastream._tcp on the given links, over IPv4 and IPv6, each
with a host name and addresses of its own. Prints "ready" when it answers, and withdraws them all
when it gets SIGTERM. Services have numbers from 1: those of our make are called "Printer 0001" and
so on, those of other makes "Other 0101". Number N has the addresses 10.100.H.L and fe80::64:0:HL (H
and L: N in two bytes) on the first link, 10.101.H.L and fe80::65:0:HL on the second.

  --count N     how many services (300)
  --ours N      how many of them are of our make, the first ones (100)
  --link NAME   a link to answer on; may be given again (net0)
  --names-only  whoever asks for services gets their names, and has to ask for everything else;
                otherwise a name comes with its other records, as from most printers
  --one-machine a print server shares them all: names only, many in each packet

An ORDER is one argument, or one line of standard input while it runs, each answered with "ok" or
with what is wrong. MEMBERS is a number or a range such as 1-200.

  announce MEMBERS     they are there (again), and say so
  withdraw MEMBERS     they say goodbye
  vanish MEMBERS       they are gone without a word
  silent MEMBERS       they tell their name, and never anything else
  late MEMBERS S       nothing else until S seconds after they are first asked for more
  elsewhere MEMBERS    they claim to be on the host of the next number
  move MEMBERS         they get other addresses (10.102.H.L, then 10.104.H.L ...), and say so
  moving MEMBERS       they have other addresses in each answer
  flap MEMBERS N       they come and go N times a second, until:
  steady MEMBERS       they are there
  long-text MEMBERS    they have a TXT record of 8 KiB
  no-text MEMBERS      they have none
  two MEMBERS          they are two machines of one name, with another host on each link
)";

struct Options {
  crowd::Responder::Options crowd{300, 100, true, false, {}};
  std::vector<std::string> links;
  std::vector<std::string> orders;
};

unsigned numberIn(const char* text) { return static_cast<unsigned>(std::stoul(text)); }

Options parse(int argc, char** argv) {
  Options options;
  const option known[] = {
      {"count", required_argument, nullptr, 'c'},
      {"ours", required_argument, nullptr, 'o'},
      {"link", required_argument, nullptr, 'l'},
      {"names-only", no_argument, nullptr, 'n'},
      {"one-machine", no_argument, nullptr, 'm'},
      {"help", no_argument, nullptr, 'h'},
      {nullptr, 0, nullptr, 0},
  };
  for (int key; (key = getopt_long(argc, argv, "", known, nullptr)) != -1;) {
    if (key == '?') throw std::invalid_argument(kUsage);
    if (key == 'c') options.crowd.count = numberIn(optarg);
    if (key == 'o') options.crowd.ours = numberIn(optarg);
    if (key == 'l') options.links.emplace_back(optarg);
    if (key == 'n') options.crowd.tellsAllAtOnce = false;
    if (key == 'm') {
      options.crowd.tellsAllAtOnce = false;
      options.crowd.isOneMachine = true;
    }
    if (key == 'h') {
      std::cout << kUsage;
      std::exit(EXIT_SUCCESS);
    }
  }
  if (options.links.empty()) options.links.emplace_back("net0");
  options.orders.assign(argv + optind, argv + argc);
  return options;
}

int signalDescriptor() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  return signalfd(-1, &ends, SFD_CLOEXEC);
}

class Program {
 public:
  explicit Program(const Options& options)
      : mSockets(options.links), mResponder(withPlaces(options)), mEnd(signalDescriptor()) {
    for (const std::string& order : options.orders) obey(mResponder, order, now());
  }

  void run() {
    std::vector<pollfd> watched{{mEnd, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    for (const int descriptor : mSockets.descriptors()) watched.push_back({descriptor, POLLIN, 0});
    constexpr std::size_t kFirstSocket = 2;
    std::cout << "ready" << std::endl;
    while (!mEnding || mResponder.nextDue()) {
      poll(watched.data(), watched.size(), pause());
      if (watched[0].revents != 0) {
        withdrawAll();
        watched[0].fd = -1;
      }
      if (watched[1].revents != 0 && !readOrders()) watched[1].fd = -1;
      for (std::size_t i = kFirstSocket; i < watched.size(); ++i) {
        if (watched[i].revents != 0) receive(i - kFirstSocket);
      }
      sendDue();
    }
  }

 private:
  crowd::Responder::Options withPlaces(const Options& options) const {
    crowd::Responder::Options crowd = options.crowd;
    crowd.places = mSockets.places();
    return crowd;
  }

  static Time now() {
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
  }

  int pause() const {
    const auto due = mResponder.nextDue();
    return due ? static_cast<int>(std::max(*due - now(), Time(0)).count()) : -1;
  }

  void receive(std::size_t place) {
    mSockets.receive(place, [&](const crowd::Asker& asker, std::span<const std::uint8_t> bytes) {
      mResponder.heard(place, asker, bytes, now());
    });
  }

  void sendDue() {
    for (const crowd::Datagram& datagram : mResponder.takeDue(now())) mSockets.send(datagram);
  }

  bool readOrders() {
    char bytes[4096];
    const ssize_t size = read(STDIN_FILENO, bytes, sizeof bytes);
    if (size <= 0) return false;
    mInput.append(bytes, static_cast<std::size_t>(size));
    for (auto end = mInput.find('\n'); end != std::string::npos; end = mInput.find('\n')) {
      const std::string order = mInput.substr(0, end);
      mInput.erase(0, end + 1);
      try {
        obey(mResponder, order, now());
        std::cout << "ok" << std::endl;
      } catch (const std::invalid_argument& error) {
        std::cout << error.what() << std::endl;
      }
    }
    return true;
  }

  // The loop goes on until they have said so.
  void withdrawAll() {
    mEnding = true;
    obey(mResponder, "withdraw 1-" + std::to_string(mResponder.count()), now());
  }

  crowd::MulticastSockets mSockets;
  crowd::Responder mResponder;
  int mEnd;
  bool mEnding = false;
  std::string mInput;
};

}  // namespace

int main(int argc, char** argv) try {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  Program(parse(argc, argv)).run();
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
