// A multicast DNS answer that no well-behaved stack would send, put on the first link by the other
// machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DnsMessage.h"

class MulticastPacket {
 public:
  // Announces a raw-print service of this name, which may be any bytes, on host HOST.local.
  MulticastPacket(const std::string& serviceName, const std::string& host);

  // The wire form of the TXT record, whatever it is.
  void addTxt(const std::vector<std::uint8_t>& wireForm);
  void addLocationAndAddress();

  void send() const;

 private:
  void add(const dns::Name& name, std::uint16_t type, const dns::Bytes& data,
           const dns::Name& target = {});

  dns::Name mService;
  dns::Name mHost;
  dns::MessageWriter mPacket;
};
