// One run of the tool: puts its printers, of which there is mostly one, and their journal together,
// and decides when the run is over.
#pragma once

#include <csignal>
#include <fstream>
#include <memory>
#include <vector>

#include "Device.h"
#include "EventLoop.h"
#include "FileDescriptor.h"
#include "Journal.h"
#include "Options.h"
#include "Printer.h"

namespace virtualprinter {

class VirtualPrinter {
 public:
  // Throws std::runtime_error when the run is impossible.
  explicit VirtualPrinter(const Options& options);

  // Returns the exit status.
  int run();

 private:
  bool isFleet() const { return mOptions.count.has_value(); }
  void openJournal();
  void printEntry(const Journal::Fields& entry) const;
  void makeDevices();
  void watchSignals();
  void considerExit();
  bool isAwaitedOf(const Tally& tally) const;
  bool awaitedEventHappened() const;
  Tally tally() const;
  int exitStatus() const;

  Options mOptions;
  EventLoop mLoop;
  std::ofstream mJournalFile;
  Journal mJournal;
  std::vector<std::unique_ptr<Device>> mDevices;
  FileDescriptor mSignals;
  std::unique_ptr<EventLoop::Watch> mSignalWatch;
  std::unique_ptr<Scheduler::Timer> mTimeLimit;
  bool mTimedOut = false;
};

}  // namespace virtualprinter
