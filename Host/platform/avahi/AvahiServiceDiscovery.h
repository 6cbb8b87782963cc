// Service discovery through Avahi: by the host's daemon where one runs, else by a stack inside this
// process. A daemon that comes, goes or returns while the program runs is followed.
#pragma once

#include <memory>

#include "platform/DiscoveryStatus.h"
#include "platform/RunLoop.h"
#include "platform/ServiceDiscovery.h"

namespace platform {

// Where very many services are announced, those whose names contain `askedFirst` are resolved
// before the others; it says nothing about which of them are. `status`, where there is one, is told
// who searches. It and `runLoop` must outlive the browsers.
std::unique_ptr<ServiceDiscovery> makeAvahiServiceDiscovery(RunLoop& runLoop,
                                                            const Text& askedFirst = {},
                                                            DiscoveryStatus* status = nullptr);

}  // namespace platform
