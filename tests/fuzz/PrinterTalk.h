// What a printer has to say in a download: it waits until it is sent, in pieces, and may be changed
// meanwhile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "PrinterMessages.h"

class PrinterTalk {
 public:
  // The whole answer to one of the requests; to that for the device ID in one of five ways.
  void sayNext(std::uint8_t which) {
    const std::string ids[] = {kDeviceId100, bytes("\0\x24MDL:KX350T;LIC:QT725013;FWVER:199;"),
                               bytes("\0\x24MDL:KX350T;LIC:QT725013;FWVER:200;"),
                               bytes("\0\x24MDL:KX350T;LIC:QT725013;FWVER:900;"),
                               bytes("\0\x24MDL:KX999T;LIC:QT725013;FWVER:100;")};
    mSaid += which >= 16 ? kBurnResponse : kDeviceIdResponse + ids[which % 5];
  }

  // A count of 31 means all of it.
  std::string take(std::uint8_t count) {
    const std::string piece = count == 31 ? mSaid : mSaid.substr(0, count);
    mSaid.erase(0, piece.size());
    return piece;
  }

  void change(std::uint8_t which, std::uint8_t how) {
    if (mSaid.empty()) return;
    char& byte = mSaid[which % mSaid.size()];
    byte = static_cast<char>(byte ^ how);
  }

  void forget() { mSaid.clear(); }

 private:
  std::string mSaid;
};
