#include "DownloadAnnouncement.h"

#include "FirmwareDownloader.h"
#include "platform/DownloadObserver.h"

DownloadAnnouncement::DownloadAnnouncement(FirmwareDownloader& downloader,
                                           const platform::Text& printer,
                                           const platform::Text& info)
    : mDownloader(downloader) {
  mDownloader.mIsAnnounced = true;
  platform::downloadObserver().downloadBegan(printer, info);
}

DownloadAnnouncement::~DownloadAnnouncement() {
  if (mDownloader.mAsyncTaskQueue.empty()) {
    mDownloader.announceEnd(platform::DownloadOutcome::Failed);
  }
}
