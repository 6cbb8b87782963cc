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
  TcpServer mServer;
  std::unique_ptr<Attachment> mAnnouncer;
  FileDescriptor mSignals;
  std::unique_ptr<EventLoop::Watch> mSignalWatch;
  std::unique_ptr<Scheduler::Timer> mTimeLimit;
  bool mTimedOut = false;
};

}  // namespace virtualprinter
