#include "FakeServiceDiscovery.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "platform/Platform.h"

using platform::NetServiceBrowser;
using platform::StreamError;
using platform::Text;

namespace {

std::string quoted(const Text& text) {
  return text.isNull() ? "<null>" : "\"" + std::string(text.utf8()) + "\"";
}

}  // namespace

class FakeServiceDiscovery::Browser : public NetServiceBrowser {
 public:
  Browser(FakeServiceDiscovery& network, Callback callback, void* info)
      : mNetwork(network), mCallback(callback), mInfo(info) {
    mNetwork.mBrowsers.insert(this);
  }
  ~Browser() override {
    mNetwork.mScript.record("browser.destroy", {});
    mNetwork.mBrowsers.erase(this);
  }
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  void schedule() override {
    mNetwork.mScript.record("browser.schedule", {});
    mScheduled = true;
    deliverLater();
  }

  void unschedule() override {
    mNetwork.mScript.record("browser.unschedule", {});
    mScheduled = false;
  }

  bool searchForServices(const Text& domain, const Text& type, StreamError* error) override {
    const auto answer =
        mNetwork.mScript.record("browser.searchForServices", {quoted(domain), quoted(type)});
    const bool fails = answer && *answer != platform::noErr;
    if (fails || mSearching || !mValid || !isServiceType(type.utf8())) {
      *error = {platform::kStreamErrorDomainNetServices, platform::kNetServicesErrorUnknown};
      return false;
    }
    mSearching = true;
    mType = type.utf8();
    for (const auto& announcement : mNetwork.mAnnouncements) appeared(announcement);
    return true;
  }

  void stopSearch(StreamError*) override {
    mNetwork.mScript.record("browser.stopSearch", {});
    end();
  }

  void invalidate() override {
    mNetwork.mScript.record("browser.invalidate", {});
    mValid = false;
    end();
  }

  void appeared(const FakeNetService::Announcement& announcement) {
    if (!mSearching || announcement.type != mType) return;
    const auto service = std::make_shared<FakeNetService>(mNetwork.mScript, announcement);
    mServices.push_back(service);
    tell({0, service, {}});
  }

  void disappeared(const std::string& name) {
    const auto hasName = [&](const auto& service) { return service->name().utf8() == name; };
    const auto known = std::find_if(mServices.begin(), mServices.end(), hasName);
    if (known == mServices.end()) return;
    tell({platform::kServiceFlagRemove, *known, {}});
    mServices.erase(known);
  }

  void failed(StreamError error) {
    if (mSearching) tell({0, nullptr, error});
  }

 private:
  struct Event {
    unsigned long flags;
    std::shared_ptr<FakeNetService> service;
    StreamError error;
  };

  static bool isServiceType(std::string_view type) {
    return type.starts_with('_') && (type.ends_with("._tcp") || type.ends_with("._udp"));
  }

  void tell(Event event) {
    mEvents.push_back(std::move(event));
    deliverLater();
  }

  void end() {
    mSearching = false;
    mEvents.clear();
    mAlive = std::make_shared<bool>();
    for (const auto& service : mServices) service->silence();
    mEnded.insert(mEnded.end(), mServices.begin(), mServices.end());
    mServices.clear();
  }

  void deliverLater() {
    platform::current().runLoop->callLater([this, alive = std::weak_ptr(mAlive)] {
      if (!alive.expired()) deliver();
    });
  }

  // One event for each call: the product may destroy the browser in its callback.
  void deliver() {
    if (!mScheduled || mEvents.empty()) return;
    const Event event = std::move(mEvents.front());
    mEvents.pop_front();
    unsigned long flags = event.flags;
    if (!mEvents.empty()) {
      flags |= platform::kServiceFlagMoreComing;
      deliverLater();
    }
    StreamError error = event.error;
    mCallback(this, flags, event.service.get(), &error, mInfo);
  }

  FakeServiceDiscovery& mNetwork;
  const Callback mCallback;
  void* const mInfo;
  bool mScheduled = false;
  bool mSearching = false;
  bool mValid = true;
  std::string mType;
  std::vector<std::shared_ptr<FakeNetService>> mServices;
  std::vector<std::shared_ptr<FakeNetService>> mEnded;  // until the browser is gone
  std::deque<Event> mEvents;
  std::shared_ptr<bool> mAlive = std::make_shared<bool>();
};

void FakeServiceDiscovery::announce(FakeNetService::Announcement announcement) {
  for (Browser* browser : mBrowsers) browser->appeared(announcement);
  mAnnouncements.push_back(std::move(announcement));
}

void FakeServiceDiscovery::withdraw(const std::string& name) {
  std::erase_if(mAnnouncements, [&](const auto& known) { return known.name == name; });
  for (Browser* browser : mBrowsers) browser->disappeared(name);
}

void FakeServiceDiscovery::fail(StreamError error) {
  for (Browser* browser : mBrowsers) browser->failed(error);
}

std::unique_ptr<NetServiceBrowser> FakeServiceDiscovery::createBrowser(
    NetServiceBrowser::Callback callback, void* info) {
  const auto answer = mScript.record("createBrowser", {});
  if (answer && *answer != platform::noErr) return nullptr;
  return std::make_unique<Browser>(*this, callback, info);
}
