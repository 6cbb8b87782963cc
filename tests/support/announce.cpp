// Announces services as a printer does, until it is told to end: a printer for the discovery tests.
// It has a multicast DNS stack of its own, so that it needs no daemon.
#include <arpa/inet.h>
#include <avahi-common/address.h>
#include <avahi-common/domain.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/simple-watch.h>
#include <avahi-common/strlst.h>
#include <avahi-common/timeval.h>
#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/publish.h>
#include <avahi-core/rr.h>
#include <getopt.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr const char* kUsage =
    R"(Usage: announce [OPTION...] NAME [TXT...]

Announces the service NAME with the given TXT strings ("KEY=VALUE"; \xNN is a byte), prints
"established" when it is announced, and withdraws it when it gets SIGTERM.

  --type TYPE       service type (_pdl-datastream._tcp)
  --port PORT       port number (9100)
  --domain DOMAIN   is announced in this domain, which is named as one to browse (local)
  --no-ipv4         has no IPv4 at all: neither an address nor announcements
  --no-ipv6         has no IPv6 at all
  --no-address      never tells its address, so that it cannot be resolved
  --address-after S tells it only after S seconds
  --over-ipv6       speaks over IPv6 only, whatever addresses it has
  --alone           tolerates no other multicast DNS stack on its machine
  --probe           asks first whether its names are free, as printers do; takes a second
)";

constexpr std::uint32_t kTimeToLive = 120;
constexpr std::uint32_t kLongTimeToLive = 4500;

struct Options {
  std::string type = "_pdl-datastream._tcp";
  std::string domain = "local";
  std::uint16_t port = 9100;
  int noIPv4 = 0;
  int noIPv6 = 0;
  int noAddress = 0;
  int addressAfter = 0;  // seconds
  int overIPv6 = 0;
  int alone = 0;
  int probe = 0;
  std::string name;
  std::vector<std::string> txt;
};

std::string unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.compare(i, 2, "\\x") == 0 && i + 4 <= text.size()) {
      bytes.push_back(static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16)));
      i += 3;
    } else {
      bytes.push_back(text[i]);
    }
  }
  return bytes;
}

Options parse(int argc, char** argv) {
  Options options;
  const option known[] = {
      {"type", required_argument, nullptr, 't'},
      {"port", required_argument, nullptr, 'p'},
      {"domain", required_argument, nullptr, 'd'},
      {"no-ipv4", no_argument, &options.noIPv4, 1},
      {"no-ipv6", no_argument, &options.noIPv6, 1},
      {"no-address", no_argument, &options.noAddress, 1},
      {"probe", no_argument, &options.probe, 1},
      {"over-ipv6", no_argument, &options.overIPv6, 1},
      {"alone", no_argument, &options.alone, 1},
      {"address-after", required_argument, nullptr, 'a'},
      {nullptr, 0, nullptr, 0},
  };
  for (int key; (key = getopt_long(argc, argv, "", known, nullptr)) != -1;) {
    if (key == '?') throw std::invalid_argument(kUsage);
    if (key == 'a') options.addressAfter = std::stoi(optarg);
    if (key == 'd') options.domain = optarg;
    if (key == 't') options.type = optarg;
    if (key == 'p') options.port = static_cast<std::uint16_t>(std::stoi(optarg));
  }
  if (optind >= argc) throw std::invalid_argument(kUsage);
  options.name = unescaped(argv[optind]);
  for (int i = optind + 1; i < argc; ++i) options.txt.push_back(unescaped(argv[i]));
  return options;
}

void check(int result) {
  if (result < 0) throw std::runtime_error(avahi_strerror(result));
}

class Announcer {
 public:
  explicit Announcer(const Options& options)
      : mOptions(options), mHost("printer" + std::to_string(getpid()) + ".local") {
    avahi_set_log_function([](AvahiLogLevel level, const char* text) {
      if (level == AVAHI_LOG_ERROR) std::cerr << text << '\n';
    });
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.use_ipv4 = options.noIPv4 == 0 && options.overIPv6 == 0;
    config.use_ipv6 = options.noIPv6 == 0;
    config.disallow_other_stacks = options.alone;
    config.publish_addresses = 0;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
    config.publish_domain = 0;
    config.enable_wide_area = 0;
    int error = 0;
    mServer = avahi_server_new(avahi_simple_poll_get(mPoll), &config, nullptr, nullptr, &error);
    avahi_server_config_free(&config);
    check(error);
    publish();
  }
  ~Announcer() {
    avahi_server_free(mServer);
    avahi_simple_poll_free(mPoll);
  }
  Announcer(const Announcer&) = delete;
  Announcer& operator=(const Announcer&) = delete;

  void runUntilReadable(int descriptor) {
    const AvahiPoll* api = avahi_simple_poll_get(mPoll);
    AvahiWatch* watch = api->watch_new(
        api, descriptor, AVAHI_WATCH_IN,
        [](AvahiWatch*, int, AvahiWatchEvent, void* poll) {
          avahi_simple_poll_quit(static_cast<AvahiSimplePoll*>(poll));
        },
        mPoll);
    avahi_simple_poll_loop(mPoll);
    api->watch_free(watch);
  }

 private:
  void publish() {
    AvahiSEntryGroup* group = avahi_s_entry_group_new(mServer, groupChanged, nullptr);
    if (mOptions.addressAfter > 0) {
      addAddressesLater();
    } else if (mOptions.noAddress == 0) {
      addAddresses(group);
    }

    char name[AVAHI_DOMAIN_NAME_MAX];
    check(avahi_service_name_join(name, sizeof name, mOptions.name.c_str(), mOptions.type.c_str(),
                                  mOptions.domain.c_str()));
    addPointer(group, mOptions.type + "." + mOptions.domain, name);
    if (mOptions.domain != "local") {
      addPointer(group, "b._dns-sd._udp.local", mOptions.domain.c_str());
    }

    AvahiRecord* location = newRecord(name, AVAHI_DNS_TYPE_SRV, kTimeToLive);
    location->data.srv = {0, 0, mOptions.port, avahi_strdup(mHost.c_str())};
    add(group, location, uniqueFlags());

    AvahiRecord* txt = newRecord(name, AVAHI_DNS_TYPE_TXT, kLongTimeToLive);
    for (const std::string& text : mOptions.txt) {
      const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
      AvahiStringList*& strings = txt->data.txt.string_list;
      strings = avahi_string_list_add_arbitrary(strings, bytes, text.size());
    }
    add(group, txt, uniqueFlags());
    check(avahi_s_entry_group_commit(group));
  }

  void addPointer(AvahiSEntryGroup* group, const std::string& from, const char* to) {
    AvahiRecord* pointer = newRecord(from.c_str(), AVAHI_DNS_TYPE_PTR, kLongTimeToLive);
    pointer->data.ptr.name = avahi_strdup(to);
    add(group, pointer, AvahiPublishFlags{});
  }

  static AvahiRecord* newRecord(const char* name, std::uint16_t type, std::uint32_t timeToLive) {
    return avahi_record_new_full(name, AVAHI_DNS_CLASS_IN, type, timeToLive);
  }

  void add(AvahiSEntryGroup* group, AvahiRecord* record, AvahiPublishFlags flags) {
    check(avahi_server_add(mServer, group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, flags, record));
    avahi_record_unref(record);
  }

  void addAddressesLater() {
    timeval due;
    avahi_elapse_time(&due, static_cast<unsigned>(mOptions.addressAfter) * 1000, 0);
    const AvahiPoll* api = avahi_simple_poll_get(mPoll);
    const auto elapsed = [](AvahiTimeout*, void* userData) {
      auto& self = *static_cast<Announcer*>(userData);
      AvahiSEntryGroup* group = avahi_s_entry_group_new(self.mServer, nullptr, nullptr);
      self.addAddresses(group);
      check(avahi_s_entry_group_commit(group));
    };
    api->timeout_new(api, &due, elapsed, this);
  }

  // On each link the addresses that the machine has there.
  void addAddresses(AvahiSEntryGroup* group) {
    const auto addressFlags = static_cast<AvahiPublishFlags>(
        AVAHI_PUBLISH_NO_REVERSE | (mOptions.probe != 0 ? 0 : AVAHI_PUBLISH_NO_PROBE));
    ifaddrs* all = nullptr;
    if (getifaddrs(&all) != 0) throw std::runtime_error("no addresses");
    for (const ifaddrs* entry = all; entry != nullptr; entry = entry->ifa_next) {
      AvahiAddress address{};
      if (entry->ifa_addr == nullptr || !toAvahi(*entry->ifa_addr, address)) continue;
      check(avahi_server_add_address(mServer, group,
                                     static_cast<AvahiIfIndex>(if_nametoindex(entry->ifa_name)),
                                     AVAHI_PROTO_UNSPEC, addressFlags, mHost.c_str(), &address));
    }
    freeifaddrs(all);
  }

  bool toAvahi(const sockaddr& from, AvahiAddress& to) const {
    if (from.sa_family == AF_INET && mOptions.noIPv4 == 0) {
      sockaddr_in ipv4;
      std::memcpy(&ipv4, &from, sizeof ipv4);
      to.proto = AVAHI_PROTO_INET;
      to.data.ipv4.address = ipv4.sin_addr.s_addr;
      return true;
    }
    if (from.sa_family == AF_INET6 && mOptions.noIPv6 == 0) {
      sockaddr_in6 ipv6;
      std::memcpy(&ipv6, &from, sizeof ipv6);
      to.proto = AVAHI_PROTO_INET6;
      std::memcpy(to.data.ipv6.address, &ipv6.sin6_addr, sizeof to.data.ipv6.address);
      return true;
    }
    return false;
  }

  AvahiPublishFlags uniqueFlags() const {
    return mOptions.probe != 0
               ? AVAHI_PUBLISH_UNIQUE
               : static_cast<AvahiPublishFlags>(AVAHI_PUBLISH_UNIQUE | AVAHI_PUBLISH_NO_PROBE);
  }

  static void groupChanged(AvahiServer*, AvahiSEntryGroup*, AvahiEntryGroupState state, void*) {
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) std::cout << "established" << std::endl;
    if (state == AVAHI_ENTRY_GROUP_COLLISION) std::cout << "collision" << std::endl;
  }

  const Options mOptions;
  const std::string mHost;
  AvahiSimplePoll* mPoll = avahi_simple_poll_new();
  AvahiServer* mServer = nullptr;
};

}  // namespace

int main(int argc, char** argv) try {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  sigset_t ends;
  sigemptyset(&ends);
  sigaddset(&ends, SIGTERM);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  const int ended = signalfd(-1, &ends, SFD_CLOEXEC);

  Announcer announcer(parse(argc, argv));
  announcer.runUntilReadable(ended);
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
