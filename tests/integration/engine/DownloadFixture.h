// The real engine against the virtual printer: real TCP between two processes.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "DownloadLog.h"
#include "NetworkEngine.h"
#include "TemporaryDirectory.h"
#include "VirtualPrinterProcess.h"

// The options of the printer that DownloadFixture speaks of, with its faults.
std::vector<std::string> printerOptions(const std::vector<std::string>& faults);

// The firmware file that goes with it: 28 bytes, version 200, checksum 0x7271.
std::string firmware200();

class DownloadFixture : public testing::Test, protected NetworkEngine {
 protected:
  DownloadFixture();

  // A printer of model KX350T, LIC QT725013 and version 100, with kFirmware200 as its file. Burns
  // for 30 ms and is away for 100 ms.
  void startPrinter(const std::vector<std::string>& faults = {},
                    const std::vector<std::string>& options = {});

  void installFirmware(const std::string& name, const std::string& image);

  // Starts a download; the run loop has not run yet when this returns.
  void download();

  // Each runs the loop until then; fails the test when that takes too long.
  void runUntilLogged(const std::string& text);
  void runUntilOutcome();

  // Runs until the log ends in `text`, lets the printer come to `event` meanwhile, and runs on from
  // there: what the printer did reaches the program at a known moment.
  void holdUntilPrinter(const std::string& event, const std::string& text);

  // Nothing happens any more, and no outcome has been told. Drops the download.
  void expectStillWaiting();

  std::vector<std::string> log() const { return mLog.lines(); }

  // The events and commands since the last call: "FwDl 1" for a posted resume, "DlOk".
  std::vector<std::string> takeEvents();

  // The printer's view, complete: it is ended for that.
  int stopPrinter() { return mPrinter->stop(); }

  TemporaryDirectory mResources;
  std::unique_ptr<VirtualPrinterProcess> mPrinter;
};
