#include <avahi-common/error.h>
#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/publish.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <stdexcept>

#include "Announcement.h"

namespace virtualprinter {
namespace {

struct LocalAddress {
  int interface;
  AvahiAddress address;
};

// The IPv4 addresses of the interfaces that are up: the printer listens on no others.
std::vector<LocalAddress> localAddresses() {
  std::vector<LocalAddress> addresses;
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return addresses;
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
    if ((entry->ifa_flags & IFF_UP) == 0) continue;
    LocalAddress local{};
    local.interface = static_cast<int>(if_nametoindex(entry->ifa_name));
    local.address.proto = AVAHI_PROTO_INET;
    const void* bytes = entry->ifa_addr;
    local.address.data.ipv4.address = static_cast<const sockaddr_in*>(bytes)->sin_addr.s_addr;
    addresses.push_back(local);
  }
  freeifaddrs(list);
  return addresses;
}

class InProcessAnnouncer : public Attachment {
 public:
  InProcessAnnouncer(const Announcement& announcement, EventLoop& loop, Journal& journal)
      : mAnnouncement(announcement), mLoop(loop), mJournal(journal) {
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
    config.publish_addresses = 0;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
    config.publish_domain = 0;
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
    if (state == AVAHI_SERVER_FAILURE) announcer->failed();
  }

  void announce() {
    if (!mPresent || avahi_server_get_state(mServer) != AVAHI_SERVER_RUNNING) return;
    if (mGroup == nullptr) {
      mGroup = avahi_s_entry_group_new(mServer, &InProcessAnnouncer::groupChanged, this);
    }
    if (mGroup == nullptr) return failed();
    if (avahi_s_entry_group_is_empty(mGroup) == 0) return;
    const std::string host = mAnnouncement.hostName + ".local";
    const StringList txt = txtList(mAnnouncement);
    int error = avahi_server_add_service_strlst(
        mServer, mGroup, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, static_cast<AvahiPublishFlags>(0),
        mAnnouncement.name.c_str(), Announcement::kType, nullptr, host.c_str(), mAnnouncement.port,
        txt.get());
    if (error == AVAHI_ERR_COLLISION) return rename();
    for (LocalAddress& local : localAddresses()) {
      if (error != 0) break;
      error = avahi_server_add_address(mServer, mGroup, local.interface, AVAHI_PROTO_UNSPEC,
                                       AVAHI_PUBLISH_NO_REVERSE, host.c_str(), &local.address);
    }
    if (error == 0) error = avahi_s_entry_group_commit(mGroup);
    if (error != 0) failed();
  }

  static void groupChanged(AvahiServer*, AvahiSEntryGroup*, AvahiEntryGroupState state,
                           void* self) {
    auto* announcer = static_cast<InProcessAnnouncer*>(self);
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
      tellAnnounced(announcer->mJournal, announcer->mAnnouncement, "in-process");
    }
    if (state == AVAHI_ENTRY_GROUP_COLLISION) announcer->rename();
    if (state == AVAHI_ENTRY_GROUP_FAILURE) announcer->failed();
  }

  void rename() {
    mAnnouncement.name = alternativeName(mAnnouncement.name);
    if (mGroup != nullptr) avahi_s_entry_group_reset(mGroup);
    announce();
  }

  void failed() {
    const std::string reason = avahi_strerror(avahi_server_errno(mServer));
    mJournal.write("not-announced", {{"reason", reason}});
  }

  Announcement mAnnouncement;
  EventLoop& mLoop;
  Journal& mJournal;
  bool mPresent = false;
  AvahiServer* mServer = nullptr;
  AvahiSEntryGroup* mGroup = nullptr;
};

}  // namespace

std::unique_ptr<Attachment> makeInProcessAnnouncer(const Announcement& announcement,
                                                   EventLoop& loop, Journal& journal) {
  return std::make_unique<InProcessAnnouncer>(announcement, loop, journal);
}

}  // namespace virtualprinter
