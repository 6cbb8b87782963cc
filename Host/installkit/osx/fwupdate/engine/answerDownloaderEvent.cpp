#include "answerDownloaderEvent.h"

platform::OSStatus answerDownloaderEvent(const platform::Event& event) {
  void* posted = nullptr;
  event.getParameter(platform::kEventParamDirectObject, posted);
  if (posted == nullptr) return platform::eventNotHandledErr;

  auto& downloader = *static_cast<FirmwareDownloader*>(posted);
  switch (event.kind()) {
    case kFwDlEventResume:
      downloader.resume();
      return platform::noErr;
    case kFwDlEventAsyncFailure:
      downloader.stopTasks();
      return platform::noErr;
    default:
      return platform::eventNotHandledErr;
  }
}
