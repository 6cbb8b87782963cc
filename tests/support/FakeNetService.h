// A service whose answers a test lays down. It keeps every call in its discovery's record, as
// "Printer.schedule()"; outcomes come from the platform's run loop.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CallScript.h"
#include "platform/RunLoop.h"
#include "platform/ServiceDiscovery.h"

class FakeNetService : public platform::NetService {
 public:
  struct Announcement {
    std::string name;
    std::string type = "_pdl-datastream._tcp";
    std::string domain = "local";
    platform::Data txt;
    std::shared_ptr<const std::vector<platform::Data>> addresses;
    bool answers = true;  // otherwise a resolve ends by its time-out
  };

  // `script` must live longer. The calls "setClient" and "resolveWithTimeout" can be made to fail.
  FakeNetService(CallScript& script, Announcement announcement);

  // Ends a resolve under way, as the end of the browser does.
  void silence();

  bool isResolving() const { return mPending != nullptr; }

  // Described as NAME.TYPE.DOMAIN.
  platform::Text description() const override;
  platform::Text name() const override;
  platform::Text type() const override;
  platform::Text domain() const override;
  bool setClient(Callback callback, void* info) override;
  void schedule() override;
  void unschedule() override;
  bool resolveWithTimeout(double seconds, platform::StreamError* error) override;
  void cancel() override;
  platform::Data txtData() const override;
  std::shared_ptr<const std::vector<platform::Data>> addresses() const override;

 private:
  bool record(const std::string& call, const std::vector<std::string>& arguments = {});
  void answerLater();
  void finish(platform::StreamError error);

  CallScript& mScript;
  const Announcement mAnnouncement;
  Callback mCallback = nullptr;
  void* mInfo = nullptr;
  bool mScheduled = false;
  bool mResolved = false;
  std::shared_ptr<bool> mPending;  // the resolve under way; a put-off answer to another is dropped
  std::unique_ptr<platform::RunLoop::Timer> mTimeout;
};
