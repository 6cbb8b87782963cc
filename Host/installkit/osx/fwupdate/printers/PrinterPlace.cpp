#include "PrinterPlace.h"

#include "BonjourPrinter.h"

PrinterPlace placeOf(const Printer& printer) {
  if (const auto* network = dynamic_cast<const BonjourPrinter*>(&printer)) {
    return {PrinterPlace::Connection::Network, {}, network->getAddress()};
  }
  return {PrinterPlace::Connection::Usb, printer.getInfo(), {}};
}
