// One printer of a run: the device, its medium, its announcement and its journal.
#pragma once

#include <memory>
#include <string>

#include "Announcement.h"
#include "EventLoop.h"
#include "Journal.h"
#include "Options.h"
#include "Printer.h"
#include "TcpServer.h"
#include "UsbGadget.h"

namespace virtualprinter {

class Device {
 public:
  // `journal` is its own from now on. Throws std::runtime_error when it cannot be had.
  Device(const Options& options, EventLoop& loop, Journal journal);

  Printer& printer() { return mPrinter; }
  const Printer& printer() const { return mPrinter; }

 private:
  void attachToNetwork(const Options& options);
  void attachToUsb(const Options& options);
  std::unique_ptr<Attachment> makeAnnouncer(const Options& options);
  Announcement announcement(const Options& options) const;

  EventLoop& mLoop;
  Journal mJournal;
  Printer mPrinter;
  std::unique_ptr<TcpServer> mServer;      // on the network,
  std::unique_ptr<Attachment> mAnnouncer;  // perhaps announced there,
  std::unique_ptr<UsbGadget> mGadget;      // or on USB
};

}  // namespace virtualprinter
