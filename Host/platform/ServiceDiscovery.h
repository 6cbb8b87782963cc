// Browsing and resolving services that are announced by DNS-SD.
//
// One arrival and one departure per service (name, type, domain), whatever the number of interfaces
// and protocols it is announced on. Callbacks come from the run loop, never from inside a call.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Data.h"
#include "platform/Describable.h"
#include "platform/Text.h"

namespace platform {

struct StreamError {
  std::int64_t domain = 0;
  std::int32_t error = 0;
};

inline constexpr std::int64_t kStreamErrorDomainNetServices = 10;
inline constexpr std::int32_t kNetServicesErrorUnknown = -72000;
inline constexpr std::int32_t kNetServicesErrorTimeout = -72007;

// Flags of a browse event, added up.
inline constexpr unsigned long kServiceFlagMoreComing = 1;
inline constexpr unsigned long kServiceFlagIsDomain = 2;
inline constexpr unsigned long kServiceFlagRemove = 8;

// One service, described by its name, type and domain. It belongs to the browser that reported it
// and lives until the removal of the service has been reported and that callback has returned, or
// the browser is gone.
class NetService : public Describable {
 public:
  using Callback = void (*)(NetService* service, StreamError* error, void* info);

  virtual Text name() const = 0;
  virtual Text type() const = 0;
  virtual Text domain() const = 0;

  // A null callback clears the client. False when the client cannot be set.
  virtual bool setClient(Callback callback, void* info) = 0;

  virtual void schedule() = 0;
  virtual void unschedule() = 0;  // cancels, too

  // Starts resolving and returns; the client is told once, of success or failure, unless the
  // service was cancelled or unscheduled before. False, with `error` set, when it cannot start.
  virtual bool resolveWithTimeout(double seconds, StreamError* error) = 0;
  virtual void cancel() = 0;

  // After a successful resolve: the TXT record in its wire form, and socket address records
  // (see Network.h), IPv4 first. Null, and null, when there are none.
  virtual Data txtData() const = 0;
  virtual std::shared_ptr<const std::vector<Data>> addresses() const = 0;
};

class NetServiceBrowser {
 public:
  // `service` is null when the event is an error of the browser itself.
  using Callback = void (*)(NetServiceBrowser* browser, unsigned long flags, NetService* service,
                            StreamError* error, void* info);

  virtual ~NetServiceBrowser() = default;

  // Events are told only while the browser is scheduled; those of the time before wait for it.
  virtual void schedule() = 0;
  virtual void unschedule() = 0;

  // `domain` "" browses the default domains. False, with `error` set, when it cannot start.
  virtual bool searchForServices(const Text& domain, const Text& type, StreamError* error) = 0;

  // No callback comes afterwards, from the browser or its services, until the next search.
  virtual void stopSearch(StreamError* error) = 0;

  // Stops the search for good.
  virtual void invalidate() = 0;
};

class ServiceDiscovery {
 public:
  virtual ~ServiceDiscovery() = default;

  // Null on failure.
  virtual std::unique_ptr<NetServiceBrowser> createBrowser(NetServiceBrowser::Callback callback,
                                                           void* info) = 0;
};

}  // namespace platform
