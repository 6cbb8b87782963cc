#include "Printer.h"

#include <ostream>

#include "BonjourPrinter.h"
#include "Log.h"
#include "UsbPrinter.h"

Printer* Printer::create(const platform::Text& name, const platform::Data& address) {
  return new BonjourPrinter(name, address);
}

Printer* Printer::create(QuillUsbDevice& device) { return new UsbPrinter(device); }

void Printer::destroy(Printer* printer) { delete printer; }

Printer::Printer(const platform::Text& name) : mName(name) {}

Printer::Printer(const std::string& name) : mName(platform::Text::fromUtf8(name)) {}

Printer::~Printer() = default;

void Printer::logDownload() const {
  Log<5>() << "Downloading firmware to " << getType() << " printer: " << getName() << "("
           << getInfo() << ")" << std::flush;
}
