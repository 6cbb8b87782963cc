#include "Download.h"

#include <stdexcept>
#include <utility>

#include "ToolHost.h"
#include "answerDownloaderEvent.h"
#include "startDownload.h"

using platform::eventNotHandledErr;
using platform::noErr;
using platform::OSStatus;

namespace {

OSStatus downloaderGoesOn(platform::EventHandlerCallRef, const platform::Event& event, void*) {
  return answerDownloaderEvent(event);
}

}  // namespace

Download::Download(ToolHost& host) : mHost(host) {
  platform::Events& events = host.events();
  const platform::EventSpec commands[] = {platform::kCommandEvent};
  if (events.installHandler(platform::kApplicationTarget, commands, outcomeTold, this,
                            mOutcomeHandler) != noErr ||
      events.installHandler(platform::kApplicationTarget, kDownloaderEvents, downloaderGoesOn,
                            nullptr, mDownloaderHandler) != noErr) {
    throw std::runtime_error("Failed to install event handler.");
  }
}

Download::~Download() {
  mHost.events().removeHandler(mDownloaderHandler);
  mHost.events().removeHandler(mOutcomeHandler);
}

// The start belongs into the loop: an outcome that comes with it ends the loop like a later one.
void Download::run(std::function<void(FirmwareDownloader&)> start) {
  mHost.runLoop().callLater([this, start = std::move(start)] {
    if (!startDownload([&] { start(mDownloader); })) mHost.events().quitApplicationEventLoop();
  });
  mHost.events().runApplicationEventLoop();
}

OSStatus Download::outcomeTold(platform::EventHandlerCallRef, const platform::Event& event,
                               void* userData) {
  platform::HICommand command;
  if (event.getParameter(platform::kEventParamDirectObject, command) != noErr) {
    return eventNotHandledErr;
  }
  switch (command.commandId) {
    case kDownloadSucceededCommand:
    case kDownloadFailedCommand:
    case kUpToDateCommand:
      static_cast<Download*>(userData)->mHost.events().quitApplicationEventLoop();
      return noErr;
    default:
      return eventNotHandledErr;
  }
}
