// A port of 127.0.0.1 at which nobody answers: connections to it neither stand nor fail.
#pragma once

#include <cstdint>

class DeafAddress {
 public:
  DeafAddress();
  ~DeafAddress();
  DeafAddress(const DeafAddress&) = delete;
  DeafAddress& operator=(const DeafAddress&) = delete;

  std::uint16_t port() const { return mPort; }

 private:
  int mListener = -1;
  int mWaiting = -1;
  std::uint16_t mPort = 0;
};
