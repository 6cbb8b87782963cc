// A service that has a name and nothing else.
#pragma once

#include <string>
#include <utility>

#include "platform/ServiceDiscovery.h"

class NamedService : public platform::NetService {
 public:
  explicit NamedService(const std::string& name) : mName(platform::Text::fromUtf8(name)) {}
  explicit NamedService(platform::Text name) : mName(std::move(name)) {}

  platform::Text description() const override { return mName; }
  platform::Text name() const override { return mName; }
  platform::Text type() const override { return platform::Text(); }
  platform::Text domain() const override { return platform::Text(); }
  bool setClient(Callback, void*) override { return false; }
  void schedule() override {}
  void unschedule() override {}
  bool resolveWithTimeout(double, platform::StreamError*) override { return false; }
  void cancel() override {}
  platform::Data txtData() const override { return nullptr; }
  std::shared_ptr<const std::vector<platform::Data>> addresses() const override { return nullptr; }

 private:
  platform::Text mName;
};
