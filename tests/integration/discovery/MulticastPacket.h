// A multicast DNS answer that no well-behaved stack would send, put on the first link by the other
// machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class MulticastPacket {
 public:
  // Announces a raw-print service of this name, which may be any bytes, on host HOST.local.
  MulticastPacket(const std::string& serviceName, const std::string& host);

  // The wire form of the TXT record, whatever it is.
  void addTxt(const std::vector<std::uint8_t>& wireForm);
  void addLocationAndAddress();

  void send() const;

 private:
  void addLabel(const std::string& label);
  void addNumber(std::size_t number, std::size_t size);
  void addPointer(std::size_t target);
  void beginRecord(std::size_t owner, std::uint16_t type);
  void endRecord();

  std::string mHost;
  std::vector<std::uint8_t> mBytes;
  std::size_t mType = 0;  // where the names begin that others point to
  std::size_t mService = 0;
  std::size_t mData = 0;  // where the data of the current record begin
};
