// Avahi's view of the program's run loop: its watches and timeouts become watches and timers of the
// loop. Used by whatever creates an Avahi object; must outlive those objects.
#pragma once

#include <avahi-common/watch.h>

#include "platform/RunLoop.h"

namespace platform {

class AvahiPollAdapter {
 public:
  explicit AvahiPollAdapter(RunLoop& runLoop);
  AvahiPollAdapter(const AvahiPollAdapter&) = delete;
  AvahiPollAdapter& operator=(const AvahiPollAdapter&) = delete;

  const AvahiPoll* api() const { return &mApi; }

 private:
  AvahiPoll mApi;
};

}  // namespace platform
