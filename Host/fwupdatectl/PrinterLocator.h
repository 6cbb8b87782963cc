// Where printers are that restart: one that was found by its announcement may come back with
// another address. What is known of it is looked up anew from time to time, since a printer that is
// back before its old announcement has ended never left the list, and would keep its old address.
#pragma once

#include <memory>

#include "PrinterDirectory.h"
#include "Target.h"
#include "platform/RunLoop.h"

class ToolHost;

class PrinterLocator {
 public:
  // Starts to look. `host` must outlive it. Throws what the product's finders throw.
  explicit PrinterLocator(ToolHost& host);

  static bool isAnnounced(const Target& printer);

  // To be asked, again and again, by whoever gets no answer from the printer. The printer itself
  // unless one alone is announced by its name. Throws what the product's finders throw.
  Target locate(const Target& printer);

 private:
  void look();

  ToolHost& mHost;
  std::unique_ptr<PrinterDirectory> mDirectory;      // null where it could not look anew
  std::unique_ptr<platform::RunLoop::Timer> mFresh;  // null once it is no longer
};
