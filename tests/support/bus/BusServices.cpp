#include "BusServices.h"

#include <poll.h>

#include <stdexcept>
#include <utility>

#include "Places.h"

namespace {

std::vector<std::string> arguments(PrivateBus::Kind bus, std::vector<std::string> services) {
  services.insert(services.begin(), bus == PrivateBus::Kind::System ? "system" : "session");
  return services;
}

}  // namespace

BusServices::BusServices(PrivateBus::Kind bus, std::vector<std::string> services)
    : mProcess(builtProgram("desktop-services"), arguments(bus, std::move(services)),
               PeerProcess::Machine::Here) {
  if (news() != "ready") throw std::runtime_error("the services do not start");
}

bool BusServices::hasNews() const {
  pollfd output{mProcess.output(), POLLIN, 0};
  return poll(&output, 1, 0) == 1;
}
