// From Avahi's types to the program's.
#pragma once

#include <avahi-common/address.h>
#include <avahi-common/strlst.h>

#include <cstdint>

#include "platform/Data.h"

namespace platform {

// A socket address record (see Network.h); null for an address that is neither IPv4 nor IPv6. A
// link-local IPv6 address gets the interface as its scope.
Data addressRecord(const AvahiAddress& address, std::uint16_t port, AvahiIfIndex interface);

// The TXT record in its wire form: the strings in the order in which they were sent. A record
// without strings is one empty string, as on the wire; other empty strings are left out.
Data txtRecord(AvahiStringList* strings);

}  // namespace platform
