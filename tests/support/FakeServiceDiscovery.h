// A network whose announcements a test makes and withdraws. It keeps every call in words; events
// come from the platform's run loop. Must outlive its browsers.
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "CallScript.h"
#include "FakeNetService.h"
#include "platform/ServiceDiscovery.h"

class FakeServiceDiscovery : public platform::ServiceDiscovery {
 public:
  // Calls are written as "createBrowser()", "browser.schedule()", "Printer.schedule()". These can
  // be made to fail, by any status: createBrowser, browser.searchForServices, and a service's
  // setClient and resolveWithTimeout.
  CallScript& script() { return mScript; }

  void announce(FakeNetService::Announcement announcement);
  void withdraw(const std::string& name);
  std::size_t browsers() const { return mBrowsers.size(); }

  // Tells the browsers an error of their own.
  void fail(platform::StreamError error);

  std::unique_ptr<platform::NetServiceBrowser> createBrowser(
      platform::NetServiceBrowser::Callback callback, void* info) override;

 private:
  class Browser;

  CallScript mScript;
  std::vector<FakeNetService::Announcement> mAnnouncements;
  std::set<Browser*> mBrowsers;
};
