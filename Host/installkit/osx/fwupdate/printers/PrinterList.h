// The model behind the printer list control: an append-only sequence of printer records. An index
// stays valid for the life of the list and is never reused; a printer that goes away is only
// marked. The list owns its records; the PrinterListView owns the list.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Printer.h"

class PrinterList {
 public:
  PrinterList() = default;
  ~PrinterList();  // destroys the records from first to last
  PrinterList(const PrinterList&) = delete;
  PrinterList& operator=(const PrinterList&) = delete;

  void addUsbPrinter(QuillUsbDevice& device);
  void addBonjourPrinter(const platform::Text& name, const platform::Data& address);

  std::size_t size() const { return mPrinters.size(); }

  // Throws std::out_of_range for an index that is not below size(). Never null.
  Printer* get(std::size_t index) const;

  // Null for an index that is not below size().
  platform::Text getName(std::size_t index) const;
  platform::Text getPrinterType(std::size_t index) const;
  platform::Text getInfo(std::size_t index) const;

  // Ignores an index that is not below size().
  void setRemoved(std::size_t index);

  // The lowest index of a record, not removed, that equals the key; std::runtime_error when there
  // is none.
  std::size_t find(const QuillUsbDevice& device) const;
  std::size_t find(platform::NetService* service) const;

 private:
  struct Destroy {
    void operator()(Printer* printer) const { Printer::destroy(printer); }
  };
  using OwnedPrinter = std::unique_ptr<Printer, Destroy>;

  // Null for an index that is not below size().
  const Printer* at(std::size_t index) const;

  template <typename Key>
  std::size_t findEqual(const Key& key) const;

  std::vector<OwnedPrinter> mPrinters;
};
