// The cells of an update over USB: what becomes of one of the eight steps in which the program and
// the printer talk, or of what comes before them.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "Cell.h"
#include "platform/UsbRegistry.h"

enum class UsbFault {
  None,
  UnplugBefore,  // when the step before is over
  UnplugDuring,  // when half of what the step sends is out
  End,           // the transfer ends with `result`
  EndHalfway,    // the same, when half of what the step sends is out
  TimeOut,       // nothing comes, or nothing is taken, as long as the program waits
  ShortWrite,    // the printer takes one byte less, and the host is content
  EmptyWrite,    // the printer takes nothing, and the host is content
  Call,          // `call` answers `result`
  ZeroPackets,   // an empty packet comes before each answer
  BytePackets,   // answers come in packets of one byte
  OnePacket,     // response and device ID come in one packet
  Reply,         // the answer of this step is `reply`
  ExcessPacket,  // the answer of this step has two bytes more
  Stale,         // `reply` was to be said in an update before
  ClaimedElsewhere,
  NoPrinterInterface,
  NoOutPipe,
  NoInPipe,
  InPipeFirst,
};

struct UsbCell : Cell {
  UsbFault fault = UsbFault::None;
  std::size_t step = 0;  // 1 to 8; 0: before the first
  platform::IOReturn result = platform::kIOReturnSuccess;
  std::string call;
  std::string reply;
  int milliseconds = 0;  // of a time-out

  // The printer has to be plugged in anew, or does so itself when it restarts, before it can be
  // updated: it waits for the rest of what was begun, has more to say, or was not opened wholly.
  bool needsReplug() const;
};

const std::vector<UsbCell>& usbCells();
