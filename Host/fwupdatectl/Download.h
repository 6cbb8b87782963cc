// One download or query from its start to its outcome, on the tool's host: what the window's event
// handling is to a window.
#pragma once

#include <functional>

#include "FirmwareDownloader.h"
#include "platform/Events.h"

class ToolHost;

class Download {
 public:
  // Throws std::runtime_error when the handlers cannot be installed. `host` must outlive it.
  explicit Download(ToolHost& host);
  ~Download();
  Download(const Download&) = delete;
  Download& operator=(const Download&) = delete;

  // `start` is called from the loop. Returns with the outcome, or when the loop was told to quit
  // before.
  void run(std::function<void(FirmwareDownloader& downloader)> start);

 private:
  static platform::OSStatus outcomeTold(platform::EventHandlerCallRef call,
                                        const platform::Event& event, void* userData);

  ToolHost& mHost;
  FirmwareDownloader mDownloader;
  platform::EventHandlerRef mOutcomeHandler = 0;
  platform::EventHandlerRef mDownloaderHandler = 0;
};
