#include "PrinterList.h"

#include <algorithm>
#include <stdexcept>

using platform::Text;

PrinterList::~PrinterList() {
  for (OwnedPrinter& printer : mPrinters) printer.reset();
}

void PrinterList::addUsbPrinter(QuillUsbDevice& device) {
  mPrinters.push_back(OwnedPrinter(Printer::create(device)));
}

void PrinterList::addBonjourPrinter(const Text& name, const platform::Data& address) {
  mPrinters.push_back(OwnedPrinter(Printer::create(name, address)));
}

Printer* PrinterList::get(std::size_t index) const {
  if (index >= mPrinters.size()) throw std::out_of_range("Invalid index into list");
  return mPrinters[index].get();
}

Text PrinterList::getName(std::size_t index) const {
  const Printer* printer = at(index);
  return printer != nullptr ? printer->getName() : Text();
}

Text PrinterList::getPrinterType(std::size_t index) const {
  const Printer* printer = at(index);
  return printer != nullptr ? printer->getType() : Text();
}

Text PrinterList::getInfo(std::size_t index) const {
  const Printer* printer = at(index);
  return printer != nullptr ? printer->getInfo() : Text();
}

void PrinterList::setRemoved(std::size_t index) {
  if (index < mPrinters.size()) mPrinters[index]->setRemoved();
}

std::size_t PrinterList::find(const QuillUsbDevice& device) const { return findEqual(device); }

std::size_t PrinterList::find(platform::NetService* service) const { return findEqual(service); }

const Printer* PrinterList::at(std::size_t index) const {
  return index < mPrinters.size() ? mPrinters[index].get() : nullptr;
}

template <typename Key>
std::size_t PrinterList::findEqual(const Key& key) const {
  const auto found = std::find_if(mPrinters.begin(), mPrinters.end(),
                                  [&](const auto& printer) { return printer->equals(key); });
  if (found == mPrinters.end()) {
    throw std::runtime_error("Cannot find the matching printer in the list.");
  }
  return static_cast<std::size_t>(found - mPrinters.begin());
}
