// The start of a download, as a printer record makes it and the observer of downloads hears of it:
// to be made before the transport is, and kept until the download runs.
#pragma once

#include "platform/Text.h"

class FirmwareDownloader;

class DownloadAnnouncement {
 public:
  // Tells that a download to this printer begins. How it ends is told by the downloader.
  DownloadAnnouncement(FirmwareDownloader& downloader, const platform::Text& printer,
                       const platform::Text& info);

  // Tells that it failed, when it never came to run.
  ~DownloadAnnouncement();

  DownloadAnnouncement(const DownloadAnnouncement&) = delete;
  DownloadAnnouncement& operator=(const DownloadAnnouncement&) = delete;

 private:
  FirmwareDownloader& mDownloader;
};
