#include "BrowserRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

platform::Text text(const char* utf8) { return platform::Text::fromUtf8(utf8); }

}  // namespace

BrowserRecorder::BrowserRecorder(platform::ServiceDiscovery& discovery)
    : browser(discovery.createBrowser(browsed, this)) {
  browser->schedule();
}

bool BrowserRecorder::search() {
  platform::StreamError error;
  return browser->searchForServices(text(""), text("_pdl-datastream._tcp"), &error);
}

std::size_t BrowserRecorder::count(const std::string& line) const {
  return static_cast<std::size_t>(std::count(told.begin(), told.end(), line));
}

void BrowserRecorder::browsed(platform::NetServiceBrowser* browser, unsigned long flags,
                              platform::NetService* service, platform::StreamError* error,
                              void* info) {
  auto& self = *static_cast<BrowserRecorder*>(info);
  EXPECT_EQ(browser, self.browser.get());
  EXPECT_EQ(service == nullptr, error->error != 0);
  if (service == nullptr) return self.note("error");

  self.look(service);
  const bool isRemoval = (flags & platform::kServiceFlagRemove) != 0;
  if (!isRemoval && self.resolves) {
    EXPECT_TRUE(service->setClient(resolved, &self));
    service->schedule();
    EXPECT_TRUE(service->resolveWithTimeout(self.timeoutSeconds, error));
  }
  self.note((isRemoval ? "removed " : "added ") + self.name);
}

void BrowserRecorder::resolved(platform::NetService* service, platform::StreamError* error,
                               void* info) {
  auto& self = *static_cast<BrowserRecorder*>(info);
  self.look(service);
  if (error->error != 0) {
    return self.note("failed " + self.name + " " + std::to_string(error->domain) + " " +
                     std::to_string(error->error));
  }
  const platform::Data txtData = service->txtData();
  self.txt = txtData != nullptr ? *txtData : std::vector<std::uint8_t>();
  self.addresses.clear();
  const auto records = service->addresses();
  for (const platform::Data& address : *records) self.addresses.push_back(*address);
  self.firstAddress[self.name] = self.addresses.at(0);
  self.txtOf[self.name] = self.txt;
  self.note("resolved " + self.name + (txtData == nullptr ? " without TXT" : ""));
}

void BrowserRecorder::look(platform::NetService* of) {
  service = of;
  name = of->name().utf8();
  type = of->type().utf8();
  domain = of->domain().utf8();
  description = of->description().utf8();
}

void BrowserRecorder::note(const std::string& line) {
  EXPECT_FALSE(std::exchange(isInCallback, true));
  told.push_back(line);
  if (line == destroysBrowserWhen) browser.reset();
  isInCallback = false;
}
