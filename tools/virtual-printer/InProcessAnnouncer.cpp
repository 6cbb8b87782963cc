#include <avahi-common/address.h>
#include <avahi-common/domain.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/strlst.h>
#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/publish.h>
#include <avahi-core/rr.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "Announcement.h"

namespace virtualprinter {
namespace {

constexpr std::uint32_t kHostTimeToLive = 120;
constexpr std::uint32_t kTimeToLive = 4500;

struct LocalAddress {
  int interface;
  AvahiAddress address;
};

// The addresses of the interfaces that are up.
std::vector<LocalAddress> localAddresses(const ResponderManners& manners) {
  std::vector<LocalAddress> addresses;
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return addresses;
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || (entry->ifa_flags & IFF_UP) == 0) continue;
    LocalAddress local{};
    local.interface = static_cast<int>(if_nametoindex(entry->ifa_name));
    const void* bytes = entry->ifa_addr;
    if (entry->ifa_addr->sa_family == AF_INET && manners.tellsIPv4) {
      local.address.proto = AVAHI_PROTO_INET;
      local.address.data.ipv4.address = static_cast<const sockaddr_in*>(bytes)->sin_addr.s_addr;
    } else if (entry->ifa_addr->sa_family == AF_INET6 && manners.tellsIPv6) {
      local.address.proto = AVAHI_PROTO_INET6;
      std::ranges::copy(static_cast<const sockaddr_in6*>(bytes)->sin6_addr.s6_addr,
                        std::begin(local.address.data.ipv6.address));
    } else {
      continue;
    }
    addresses.push_back(local);
  }
  freeifaddrs(list);
  return addresses;
}

class InProcessAnnouncer : public Attachment {
 public:
  InProcessAnnouncer(const Announcement& announcement, EventLoop& loop, Journal& journal,
                     const ResponderManners& manners)
      : mAnnouncement(announcement),
        mHost(announcement.hostName + ".local"),
        mManners(manners),
        mLoop(loop),
        mJournal(journal) {
    avahi_set_log_function([](AvahiLogLevel, const char*) {});  // it writes to standard error
  }
  ~InProcessAnnouncer() override {
    if (mServer != nullptr) avahi_server_free(mServer);  // frees the group too
  }
  InProcessAnnouncer(const InProcessAnnouncer&) = delete;
  InProcessAnnouncer& operator=(const InProcessAnnouncer&) = delete;

  void arrive() override {
    mPresent = true;
    if (mServer == nullptr) startServer();
    announce();
  }

  void leave() override {
    mPresent = false;
    if (mGroup == nullptr || avahi_s_entry_group_is_empty(mGroup) != 0) return;
    avahi_s_entry_group_reset(mGroup);
    mJournal.write("withdrawn", {{"name", mAnnouncement.name}});
  }

 private:
  // The server publishes nothing by itself: names and reverse addresses of this machine belong to
  // its own responder, should it have one.
  void startServer() {
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.use_ipv4 = mManners.speaksIPv4;
    config.use_ipv6 = mManners.speaksIPv6;
    config.publish_addresses = 0;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
    config.publish_domain = 0;
    config.enable_wide_area = 0;
    int error = 0;
    mServer = avahi_server_new(mLoop.avahiPoll(), &config, &InProcessAnnouncer::serverChanged, this,
                               &error);
    avahi_server_config_free(&config);
    if (mServer == nullptr) {
      throw std::runtime_error(std::string("the printer cannot be announced: ") +
                               avahi_strerror(error));
    }
  }

  static void serverChanged(AvahiServer* server, AvahiServerState state, void* self) {
    auto* announcer = static_cast<InProcessAnnouncer*>(self);
    announcer->mServer = server;  // the first call comes while the server is being made
    if (state == AVAHI_SERVER_RUNNING) announcer->announce();
    if (state == AVAHI_SERVER_FAILURE) announcer->failed(avahi_server_errno(server));
  }

  void announce() {
    if (!mPresent || avahi_server_get_state(mServer) != AVAHI_SERVER_RUNNING) return;
    if (mGroup == nullptr) {
      mGroup = avahi_s_entry_group_new(mServer, &InProcessAnnouncer::groupChanged, this);
    }
    if (mGroup == nullptr) return failed(avahi_server_errno(mServer));
    if (avahi_s_entry_group_is_empty(mGroup) == 0) return;
    int error = addService();
    if (error == AVAHI_ERR_COLLISION) return rename();
    if (error == 0) error = addAddresses();
    if (error == 0) error = avahi_s_entry_group_commit(mGroup);
    if (error != 0) failed(error);
  }

  // Record by record, since the library's own call always probes. Returns an Avahi error, or 0.
  int addService() {
    const std::string type = mAnnouncement.type + "." + mManners.domain;
    char name[AVAHI_DOMAIN_NAME_MAX];
    int error = avahi_service_name_join(name, sizeof name, mAnnouncement.name.c_str(),
                                        mAnnouncement.type.c_str(), mManners.domain.c_str());
    if (error == 0) error = addLocation(name);
    if (error == 0) error = addTxt(name);
    if (error == 0) error = addPointer(type, name);
    if (error == 0) error = addPointer("_services._dns-sd._udp." + mManners.domain, type);
    if (error == 0 && mManners.domain != "local") {
      error = addPointer("b._dns-sd._udp.local", mManners.domain);
    }
    return error;
  }

  int addLocation(const char* name) {
    AvahiRecord* record = newRecord(name, AVAHI_DNS_TYPE_SRV, kHostTimeToLive);
    record->data.srv = {0, 0, mAnnouncement.port, avahi_strdup(mHost.c_str())};
    return add(record, withProbing(AVAHI_PUBLISH_UNIQUE));
  }

  int addTxt(const char* name) {
    AvahiRecord* record = newRecord(name, AVAHI_DNS_TYPE_TXT, kTimeToLive);
    // A record has its list from the end.
    record->data.txt.string_list = avahi_string_list_reverse(txtList(mAnnouncement).release());
    return add(record, withProbing(AVAHI_PUBLISH_UNIQUE));
  }

  int addPointer(const std::string& from, const std::string& to) {
    AvahiRecord* record = newRecord(from.c_str(), AVAHI_DNS_TYPE_PTR, kTimeToLive);
    record->data.ptr.name = avahi_strdup(to.c_str());
    return add(record, {});
  }

  static AvahiRecord* newRecord(const char* name, std::uint16_t type, std::uint32_t timeToLive) {
    AvahiRecord* record = avahi_record_new_full(name, AVAHI_DNS_CLASS_IN, type, timeToLive);
    if (record == nullptr) throw std::bad_alloc();
    return record;
  }

  // Takes the record over.
  int add(AvahiRecord* record, AvahiPublishFlags flags) {
    const int error =
        avahi_server_add(mServer, mGroup, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, flags, record);
    avahi_record_unref(record);
    return error;
  }

  int addAddresses() {
    int error = 0;
    for (LocalAddress& local : localAddresses(mManners)) {
      if (error != 0) break;
      error = avahi_server_add_address(mServer, mGroup, local.interface, AVAHI_PROTO_UNSPEC,
                                       withProbing(AVAHI_PUBLISH_NO_REVERSE), mHost.c_str(),
                                       &local.address);
    }
    return error;
  }

  AvahiPublishFlags withProbing(AvahiPublishFlags flags) const {
    return mManners.probes ? flags : static_cast<AvahiPublishFlags>(flags | AVAHI_PUBLISH_NO_PROBE);
  }

  static void groupChanged(AvahiServer* server, AvahiSEntryGroup*, AvahiEntryGroupState state,
                           void* self) {
    auto* announcer = static_cast<InProcessAnnouncer*>(self);
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
      tellAnnounced(announcer->mJournal, announcer->mAnnouncement, "in-process");
    }
    if (state == AVAHI_ENTRY_GROUP_COLLISION) announcer->rename();
    if (state == AVAHI_ENTRY_GROUP_FAILURE) announcer->failed(avahi_server_errno(server));
  }

  void rename() {
    mAnnouncement.name = alternativeName(mAnnouncement.name);
    if (mGroup != nullptr) avahi_s_entry_group_reset(mGroup);
    announce();
  }

  void failed(int error) { mJournal.write("not-announced", {{"reason", avahi_strerror(error)}}); }

  Announcement mAnnouncement;
  const std::string mHost;
  const ResponderManners mManners;
  EventLoop& mLoop;
  Journal& mJournal;
  bool mPresent = false;
  AvahiServer* mServer = nullptr;
  AvahiSEntryGroup* mGroup = nullptr;
};

}  // namespace

std::unique_ptr<Attachment> makeInProcessAnnouncer(const Announcement& announcement,
                                                   EventLoop& loop, Journal& journal,
                                                   const ResponderManners& manners) {
  return std::make_unique<InProcessAnnouncer>(announcement, loop, journal, manners);
}

}  // namespace virtualprinter
