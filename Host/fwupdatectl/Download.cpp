#include "Download.h"

#include <exception>
#include <new>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "Log.h"
#include "ToolHost.h"

using platform::eventNotHandledErr;
using platform::noErr;
using platform::OSStatus;

namespace {

constexpr platform::EventSpec kResume{kFwDlEventClass, kFwDlEventResume};
constexpr platform::EventSpec kAsyncFailure{kFwDlEventClass, kFwDlEventAsyncFailure};

}  // namespace

Download::Download(ToolHost& host) : mHost(host) {
  platform::Events& events = host.events();
  const platform::EventSpec commands[] = {platform::kCommandEvent};
  const platform::EventSpec downloader[] = {kResume, kAsyncFailure};
  if (events.installHandler(platform::kApplicationTarget, commands, outcomeTold, this,
                            mOutcomeHandler) != noErr ||
      events.installHandler(platform::kApplicationTarget, downloader, downloaderGoesOn, this,
                            mDownloaderHandler) != noErr) {
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
    try {
      start(mDownloader);
      return;
    } catch (const std::runtime_error& error) {
      Log<3>() << "Failed to download firmware: " << error.what() << std::flush;
    } catch (const std::bad_alloc& error) {
      Log<3>() << "Failed to download firmware: " << error.what() << std::flush;
    }
    mHost.events().quitApplicationEventLoop();
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

OSStatus Download::downloaderGoesOn(platform::EventHandlerCallRef, const platform::Event& event,
                                    void* userData) {
  FirmwareDownloader& downloader = static_cast<Download*>(userData)->mDownloader;
  if (event.kind() == kResume.kind) {
    downloader.resume();
  } else {
    downloader.stopTasks();
  }
  return noErr;
}
