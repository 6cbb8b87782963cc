// A printer to be updated, as one process of this tool names it to another: what reaches it, and
// what it is called. On USB its serial number reaches it, on the network its address.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Data.h"

struct Target {
  enum class Connection { Usb, Network };

  Connection connection = Connection::Network;
  std::string name;
  std::string serial;   // USB
  std::string address;  // network: "10.0.0.5:9100", "office.example:9100"
};

// Ports are 9100 where none is given. Throws std::invalid_argument, with a sentence for the user,
// for what is no IPv4 address or host name with a port from 1 to 65535: IPv6 is not spoken by the
// product.
std::string completeAddress(const std::string& text);

// The socket address record (see platform/Network.h) of a complete address. Throws
// std::runtime_error, with a sentence for the user, for what a printer may announce and nobody can
// connect to: no address but those of IPv6 (empty), or port 0.
platform::Data addressRecord(const std::string& address);

// The complete address of a record; empty for one that is none of IPv4.
std::string addressText(const platform::Data& record);
