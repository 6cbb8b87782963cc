#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/error.h>

#include "Announcement.h"

namespace virtualprinter {
namespace {

constexpr auto kRetryTime = std::chrono::seconds(1);

class DaemonAnnouncer : public Attachment {
 public:
  DaemonAnnouncer(const Announcement& announcement, EventLoop& loop, Journal& journal)
      : mAnnouncement(announcement), mLoop(loop), mJournal(journal) {
    connect(static_cast<AvahiClientFlags>(0));
  }
  ~DaemonAnnouncer() override { disconnect(); }
  DaemonAnnouncer(const DaemonAnnouncer&) = delete;
  DaemonAnnouncer& operator=(const DaemonAnnouncer&) = delete;

  bool connected() const { return mClient != nullptr; }

  void arrive() override {
    mPresent = true;
    announce();
  }

  void leave() override {
    mPresent = false;
    if (mGroup == nullptr || avahi_entry_group_is_empty(mGroup) != 0) return;
    avahi_entry_group_reset(mGroup);  // not free: see CMakeLists.txt
    mJournal.write("withdrawn", {{"name", mAnnouncement.name}});
  }

 private:
  void connect(AvahiClientFlags flags) {
    mRetry.reset();
    int error = 0;
    mClient =
        avahi_client_new(mLoop.avahiPoll(), flags, &DaemonAnnouncer::clientChanged, this, &error);
  }

  void disconnect() {
    if (mClient != nullptr) avahi_client_free(mClient);  // frees the group too
    mClient = nullptr;
    mGroup = nullptr;
  }

  // The client that lost its daemon never finds another one; a new one waits for it.
  void reconnect() {
    disconnect();
    connect(AVAHI_CLIENT_NO_FAIL);
    if (mClient == nullptr) mRetry = mLoop.after(kRetryTime, [this] { reconnect(); });
  }

  static void clientChanged(AvahiClient* client, AvahiClientState state, void* self) {
    auto* announcer = static_cast<DaemonAnnouncer*>(self);
    announcer->mClient = client;
    switch (state) {
      case AVAHI_CLIENT_S_RUNNING:
        announcer->announce();
        break;
      case AVAHI_CLIENT_FAILURE:
        announcer->daemonLost(avahi_strerror(avahi_client_errno(client)));
        break;
      case AVAHI_CLIENT_S_COLLISION:
      case AVAHI_CLIENT_S_REGISTERING:
        // The host's name changes: the daemon wants its services announced anew after that.
        if (announcer->mGroup != nullptr) avahi_entry_group_reset(announcer->mGroup);
        break;
      case AVAHI_CLIENT_CONNECTING:
        break;
    }
  }

  void daemonLost(const std::string& reason) {
    mJournal.write("daemon-lost", {{"reason", reason}});
    // Not from inside the client's own callback.
    mRetry = mLoop.after(std::chrono::microseconds(0), [this] { reconnect(); });
  }

  void announce() {
    if (!mPresent || mClient == nullptr) return;
    if (avahi_client_get_state(mClient) != AVAHI_CLIENT_S_RUNNING) return;
    if (mGroup == nullptr) {
      mGroup = avahi_entry_group_new(mClient, &DaemonAnnouncer::groupChanged, this);
    }
    if (mGroup == nullptr) return failed();
    if (avahi_entry_group_is_empty(mGroup) == 0) return;
    const StringList txt = txtList(mAnnouncement);
    int error = avahi_entry_group_add_service_strlst(
        mGroup, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, static_cast<AvahiPublishFlags>(0),
        mAnnouncement.name.c_str(), mAnnouncement.type.c_str(), nullptr, nullptr,
        mAnnouncement.port, txt.get());
    if (error == AVAHI_ERR_COLLISION) return rename();
    if (error == 0) error = avahi_entry_group_commit(mGroup);
    if (error != 0) failed();
  }

  static void groupChanged(AvahiEntryGroup*, AvahiEntryGroupState state, void* self) {
    auto* announcer = static_cast<DaemonAnnouncer*>(self);
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
      tellAnnounced(announcer->mJournal, announcer->mAnnouncement, "daemon");
    }
    if (state == AVAHI_ENTRY_GROUP_COLLISION) announcer->rename();
    if (state == AVAHI_ENTRY_GROUP_FAILURE) announcer->failed();
  }

  void rename() {
    mAnnouncement.name = alternativeName(mAnnouncement.name);
    if (mGroup != nullptr) avahi_entry_group_reset(mGroup);
    announce();
  }

  void failed() {
    const std::string reason = avahi_strerror(avahi_client_errno(mClient));
    mJournal.write("not-announced", {{"reason", reason}});
  }

  Announcement mAnnouncement;
  EventLoop& mLoop;
  Journal& mJournal;
  bool mPresent = false;
  AvahiClient* mClient = nullptr;
  AvahiEntryGroup* mGroup = nullptr;
  std::unique_ptr<Scheduler::Timer> mRetry;
};

}  // namespace

std::unique_ptr<Attachment> makeDaemonAnnouncer(const Announcement& announcement, EventLoop& loop,
                                                Journal& journal) {
  auto announcer = std::make_unique<DaemonAnnouncer>(announcement, loop, journal);
  if (!announcer->connected()) return nullptr;
  return announcer;
}

}  // namespace virtualprinter
