// A network of services, for tests that hold for every implementation of service discovery: the
// daemon's, the one inside the process, and the double. Tests say what is announced; the program's
// side is the browser that they create, which records what it is told.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ServiceDiscovery.h"

struct AnnouncedService {
  std::string name;
  std::vector<std::string> txt = {};  // KEY=VALUE
  std::uint16_t port = 9100;
  std::string type = "_pdl-datastream._tcp";
  bool answers = true;  // otherwise it cannot be resolved
};

class DiscoveryWorld {
 public:
  virtual ~DiscoveryWorld() = default;

  virtual platform::ServiceDiscovery& discovery() = 0;

  virtual void announce(const AnnouncedService& service) = 0;
  virtual void withdraw(const std::string& name) = 0;

  // False when `done` does not hold in time.
  virtual bool runUntil(const std::function<bool()>& done) = 0;
  virtual void runFor(std::chrono::milliseconds time) = 0;
};
