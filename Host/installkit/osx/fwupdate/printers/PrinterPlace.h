// Where a printer of the list is: what another process needs to reach the same one.
#pragma once

#include "platform/Data.h"
#include "platform/Text.h"

class Printer;

struct PrinterPlace {
  enum class Connection { Usb, Network };

  Connection connection = Connection::Usb;
  platform::Text serial;   // USB
  platform::Data address;  // network: see platform/Network.h; it came from there and may be short
};

PrinterPlace placeOf(const Printer& printer);
