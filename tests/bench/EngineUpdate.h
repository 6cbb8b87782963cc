// The engine as the program runs it, without a window: real files, real sockets, a real run loop.
// Only the commands that end a download and the log are doubles.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "FakeBundle.h"
#include "FakeEvents.h"
#include "FirmwareDownloader.h"
#include "LogRecorder.h"
#include "PollRunLoop.h"
#include "platform/Files.h"
#include "platform/Network.h"

namespace bench {

class EngineUpdate {
 public:
  // `resources` has the firmware files.
  explicit EngineUpdate(const std::filesystem::path& resources);
  ~EngineUpdate();

  // Updates the printer at a port of 127.0.0.1. Throws std::runtime_error when that fails.
  void run(std::uint16_t port);

 private:
  platform::Platform surfaces();

  PollRunLoop mLoop;
  FakeEvents mEvents;
  FakeBundle mBundle;
  std::unique_ptr<platform::Files> mFiles;
  std::unique_ptr<platform::Network> mNetwork;
  LogRecorder mLog;
  std::optional<FirmwareDownloader> mDownloader;
};

}  // namespace bench
