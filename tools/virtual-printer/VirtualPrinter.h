// One run of the tool: puts the printer, its port, its announcement and its journal together, and
// decides when the run is over.
#pragma once

#include <csignal>
#include <fstream>
#include <memory>

#include "Announcement.h"
#include "EventLoop.h"
#include "FileDescriptor.h"
#include "Journal.h"
#include "Options.h"
#include "Printer.h"
#include "TcpServer.h"
#include "UsbGadget.h"

namespace virtualprinter {

class VirtualPrinter {
 public:
  // Throws std::runtime_error when the run is impossible.
  explicit VirtualPrinter(const Options& options);

  // Returns the exit status.
  int run();

 private:
  void openJournal();
  void printEntry(const Journal::Fields& entry) const;
  void attachToNetwork();
  void attachToUsb();
  std::unique_ptr<Attachment> makeAnnouncer();
  Announcement announcement() const;
  void watchSignals();
  void considerExit();
  bool awaitedEventHappened() const;
  int exitStatus() const;

  Options mOptions;
  EventLoop mLoop;
  std::ofstream mJournalFile;
  Journal mJournal;
  Printer mPrinter;
  std::unique_ptr<TcpServer> mServer;      // on the network,
  std::unique_ptr<Attachment> mAnnouncer;  // perhaps announced there,
  std::unique_ptr<UsbGadget> mGadget;      // or on USB
  FileDescriptor mSignals;
  std::unique_ptr<EventLoop::Watch> mSignalWatch;
  std::unique_ptr<Scheduler::Timer> mTimeLimit;
  bool mTimedOut = false;
};

}  // namespace virtualprinter
