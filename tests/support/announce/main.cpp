// Announces one service until it is told to end: a printer for the discovery tests, that cannot be
// spoken to. It is the virtual printer's own responder, so that it needs no daemon.
#include <getopt.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>

#include "Announcement.h"
#include "unescape.h"

namespace {

using namespace virtualprinter;

constexpr const char* kUsage =
    R"(Usage: announce [OPTION...] NAME [TXT...]

Announces the service NAME with the given TXT strings ("KEY=VALUE"; \xNN is a byte), without asking
first whether the name is free. Prints "established" when it is announced, or why it is not, and
withdraws it when it gets SIGTERM.

  --type TYPE       service type (_pdl-datastream._tcp)
  --port PORT       port number (9100)
  --domain DOMAIN   is announced in this domain, which is named as one to browse (local)
  --no-ipv4         has no IPv4 at all: neither an address nor announcements
  --no-ipv6         has no IPv6 at all
  --no-address      never tells its address, so that it cannot be resolved
  --over-ipv6       speaks over IPv6 only, whatever addresses it has
)";

struct Service {
  Announcement announcement;
  ResponderManners manners;
};

void addTxt(Announcement& announcement, const std::string& text) {
  const std::size_t equals = text.find('=');
  auto& entry = announcement.txt.emplace_back(text.substr(0, equals), std::nullopt);
  if (equals != std::string::npos) entry.second = text.substr(equals + 1);
}

Service parse(int argc, char** argv) {
  Service service;
  auto& [announcement, manners] = service;
  announcement.port = 9100;
  announcement.hostName = "printer" + std::to_string(getpid());
  manners.probes = false;
  manners.tellsIPv6 = true;
  const option known[] = {
      {"type", required_argument, nullptr, 't'},   {"port", required_argument, nullptr, 'p'},
      {"domain", required_argument, nullptr, 'd'}, {"no-ipv4", no_argument, nullptr, '4'},
      {"no-ipv6", no_argument, nullptr, '6'},      {"no-address", no_argument, nullptr, 'n'},
      {"over-ipv6", no_argument, nullptr, 'o'},    {nullptr, 0, nullptr, 0},
  };
  for (int key; (key = getopt_long(argc, argv, "", known, nullptr)) != -1;) {
    if (key == '?') throw std::invalid_argument(kUsage);
    if (key == 't') announcement.type = optarg;
    if (key == 'p') announcement.port = static_cast<std::uint16_t>(std::stoi(optarg));
    if (key == 'd') manners.domain = optarg;
    if (key == '4') manners.speaksIPv4 = manners.tellsIPv4 = false;
    if (key == '6') manners.speaksIPv6 = manners.tellsIPv6 = false;
    if (key == 'n') manners.tellsIPv4 = manners.tellsIPv6 = false;
    if (key == 'o') manners.speaksIPv4 = false;
  }
  if (optind >= argc) throw std::invalid_argument(kUsage);
  announcement.name = unescape(argv[optind]);
  for (int i = optind + 1; i < argc; ++i) addTxt(announcement, unescape(argv[i]));
  return service;
}

int signalDescriptor() {
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  return signalfd(-1, &ends, SFD_CLOEXEC);
}

}  // namespace

int main(int argc, char** argv) try {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const Service service = parse(argc, argv);
  EventLoop loop;
  const auto end = loop.watch(signalDescriptor(), POLLIN, [&loop](short) { loop.quit(); });
  Journal journal;
  journal.addSink([&service](const Journal::Fields& entry) {
    const bool asTold =
        entry.at("event") == "announced" && entry.at("name") == service.announcement.name;
    std::cout << (asTold ? "established" : Journal::toText(entry)) << std::endl;
  });
  const auto announcer =
      makeInProcessAnnouncer(service.announcement, loop, journal, service.manners);
  announcer->arrive();
  loop.run();
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
