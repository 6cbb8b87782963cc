#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/publish.h>

#include <stdexcept>

#include "Announcement.h"

namespace virtualprinter {
namespace {

class InProcessAnnouncer : public Attachment {
 public:
  InProcessAnnouncer(const Announcement& announcement, EventLoop& loop, Journal& journal)
      : mAnnouncement(announcement), mLoop(loop), mJournal(journal) {
    avahi_set_log_function([](AvahiLogLevel, const char*) {});  // it writes to standard error
  }
  ~InProcessAnnouncer() override { stop(); }
  InProcessAnnouncer(const InProcessAnnouncer&) = delete;
  InProcessAnnouncer& operator=(const InProcessAnnouncer&) = delete;

  void arrive() override {
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    // A host of its own: it must not fight with a responder of this machine for the real name, nor
    // take that name away with its goodbye.
    avahi_free(config.host_name);
    config.host_name = avahi_strdup(mAnnouncement.hostName.c_str());
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

  void leave() override {
    if (mServer == nullptr) return;
    stop();
    mJournal.write("withdrawn", {{"name", mAnnouncement.name}});
  }

 private:
  void stop() {
    if (mGroup != nullptr) avahi_s_entry_group_free(mGroup);
    if (mServer != nullptr) avahi_server_free(mServer);
    mGroup = nullptr;
    mServer = nullptr;
  }

  static void serverChanged(AvahiServer* server, AvahiServerState state, void* self) {
    auto* announcer = static_cast<InProcessAnnouncer*>(self);
    announcer->mServer = server;  // the first call comes while the server is being made
    switch (state) {
      case AVAHI_SERVER_RUNNING:
        announcer->announce();
        break;
      case AVAHI_SERVER_COLLISION:
        announcer->renameHost();
        break;
      case AVAHI_SERVER_REGISTERING:
        if (announcer->mGroup != nullptr) avahi_s_entry_group_reset(announcer->mGroup);
        break;
      case AVAHI_SERVER_FAILURE:
        announcer->failed();
        break;
      case AVAHI_SERVER_INVALID:
        break;
    }
  }

  void renameHost() {
    char* name = avahi_alternative_host_name(avahi_server_get_host_name(mServer));
    if (name == nullptr || avahi_server_set_host_name(mServer, name) != 0) failed();
    avahi_free(name);
  }

  void announce() {
    if (mGroup == nullptr) {
      mGroup = avahi_s_entry_group_new(mServer, &InProcessAnnouncer::groupChanged, this);
    }
    if (mGroup == nullptr) return failed();
    if (avahi_s_entry_group_is_empty(mGroup) == 0) return;
    const StringList txt = txtList(mAnnouncement);
    int error = avahi_server_add_service_strlst(
        mServer, mGroup, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, static_cast<AvahiPublishFlags>(0),
        mAnnouncement.name.c_str(), Announcement::kType, nullptr, nullptr, mAnnouncement.port,
        txt.get());
    if (error == AVAHI_ERR_COLLISION) return rename();
    if (error == 0) error = avahi_s_entry_group_commit(mGroup);
    if (error != 0) failed();
  }

  static void groupChanged(AvahiServer*, AvahiSEntryGroup*, AvahiEntryGroupState state,
                           void* self) {
    auto* announcer = static_cast<InProcessAnnouncer*>(self);
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
      announcer->mJournal.write("announced", {{"name", announcer->mAnnouncement.name},
                                              {"type", Announcement::kType},
                                              {"port", announcer->mAnnouncement.port},
                                              {"through", "in-process"}});
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
  AvahiServer* mServer = nullptr;
  AvahiSEntryGroup* mGroup = nullptr;
};

}  // namespace

std::unique_ptr<Attachment> makeInProcessAnnouncer(const Announcement& announcement,
                                                   EventLoop& loop, Journal& journal) {
  return std::make_unique<InProcessAnnouncer>(announcement, loop, journal);
}

}  // namespace virtualprinter
