// The engine as the program runs it, without a window: real files, real sockets, a real run loop.
// Only the log, the commands that end a download and the place of the firmware files are doubles.
// A fixture derives from it and says where the files are.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "FakeBundle.h"
#include "FakeEvents.h"
#include "FirmwareDownloader.h"
#include "LogRecorder.h"
#include "PollRunLoop.h"
#include "platform/Data.h"
#include "platform/Files.h"
#include "platform/Network.h"

// The socket address record of a port of 127.0.0.1.
platform::Data loopbackAddress(std::uint16_t port);

class NetworkEngine {
 protected:
  NetworkEngine();
  ~NetworkEngine();

  // Starts a download to a port of 127.0.0.1; the run loop has not run yet when this returns.
  void startDownload(std::uint16_t port);

  // Runs the loop and delivers the controller's events until then; false when it takes too long.
  bool runUntil(const std::function<bool()>& done,
                std::chrono::milliseconds atMost = std::chrono::seconds(20));

  // The last that was told is a command.
  bool hasOutcome() const;

  PollRunLoop mLoop;
  FakeEvents mEvents;
  FakeBundle mBundle;
  std::unique_ptr<platform::Files> mFiles;
  std::unique_ptr<platform::Network> mNetwork;
  LogRecorder mLog;
  std::optional<FirmwareDownloader> mDownloader;

 private:
  platform::Platform surfaces();
};
