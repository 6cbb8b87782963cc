#include "FirmwareDownloader.h"

#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

#include "ErrorMessage.h"
#include "IoKitException.h"
#include "IoTransport.h"
#include "Log.h"
#include "platform/Assertion.h"
#include "platform/DownloadObserver.h"
#include "platform/Events.h"
#include "platform/Platform.h"

namespace {

bool isTerminal(AsyncTaskResult result) { return (result & 0x80000000) != 0; }

void dispatch(platform::FourCharCode commandId) {
  platform::HICommand command;
  command.commandId = commandId;
  platform::current().events->processCommand(command);
}

// The end of a download: comes when the outcome has been told, also where telling it threw.
class DownloadEnd {
 public:
  explicit DownloadEnd(AsyncTaskQueue& queue) : mQueue(queue) {}
  ~DownloadEnd() { mQueue.stop(); }
  DownloadEnd(const DownloadEnd&) = delete;
  DownloadEnd& operator=(const DownloadEnd&) = delete;

 private:
  AsyncTaskQueue& mQueue;
};

AsyncTaskResult failedWith(const char* kind, const std::exception& error) {
  Log<3>() << kind << " error occurred during async task: " << error.what() << std::flush;
  return kDownloadFailed;
}

}  // namespace

FirmwareDownloader::FirmwareDownloader() = default;

FirmwareDownloader::~FirmwareDownloader() {
  Log<5>() << "Cleaning up firmware downloader." << std::flush;
  announceEnd(platform::DownloadOutcome::Failed);
}

void FirmwareDownloader::start(std::unique_ptr<IoTransport> transport) {
  mAsyncTaskQueue.start(std::move(transport));
  resume();
}

void FirmwareDownloader::query(std::unique_ptr<IoTransport> transport,
                               std::function<void(const std::wstring&)> known) {
  mAsyncTaskQueue.startQuery(std::move(transport), std::move(known));
  resume();
}

void FirmwareDownloader::resume() {
  platform::assertAt(!mAsyncTaskQueue.empty(), "!mAsyncTaskQueue.empty()", "resume",
                     "Host/installkit/osx/fwupdate/FirmwareDownloader", 51);
  AsyncTaskResult result = kTaskNotDone;
  do {
    result = runFrontTask();
    if (result == kTaskDone || result == kTaskDoneContinue) mAsyncTaskQueue.pop();
  } while (result == kTaskDoneContinue && !mAsyncTaskQueue.empty());
  actOn(result);
}

AsyncTaskResult FirmwareDownloader::runFrontTask() {
  try {
    return mAsyncTaskQueue.front()();
  } catch (const IoKitException& error) {
    return failedWith("I/O Kit", error);
  } catch (const std::runtime_error& error) {
    return failedWith("General runtime", error);
  } catch (const std::bad_alloc& error) {
    return failedWith("Allocation", error);
  }
}

// The outcome is told while the transport still exists.
void FirmwareDownloader::actOn(AsyncTaskResult result) {
  std::optional<DownloadEnd> end;
  if (isTerminal(result) || mAsyncTaskQueue.empty()) end.emplace(mAsyncTaskQueue);
  switch (result) {
    case kTaskDone:
    case kTaskDoneContinue:
    case kTaskNotDone:
      if (end) announceEnd(platform::DownloadOutcome::Failed);
      break;
    case kDownloadUpToDate:
      upToDate();
      break;
    case kDownloadSucceeded:
      succeeded();
      break;
    default:
      failed();
  }
}

void FirmwareDownloader::stopTasks() {
  const DownloadEnd end(mAsyncTaskQueue);
  failed();
}

void FirmwareDownloader::enqueueResume() { postEvent(kFwDlEventResume); }

void FirmwareDownloader::notifyAsyncFailure() { postEvent(kFwDlEventAsyncFailure); }

void FirmwareDownloader::failed() {
  announceEnd(platform::DownloadOutcome::Failed);
  dispatch(kDownloadFailedCommand);
}

void FirmwareDownloader::upToDate() {
  announceEnd(platform::DownloadOutcome::UpToDate);
  dispatch(kUpToDateCommand);
}

void FirmwareDownloader::succeeded() {
  announceEnd(platform::DownloadOutcome::Succeeded);
  dispatch(kDownloadSucceededCommand);
}

void FirmwareDownloader::announceEnd(platform::DownloadOutcome outcome) {
  if (std::exchange(mIsAnnounced, false)) platform::downloadObserver().downloadEnded(outcome);
}

void FirmwareDownloader::postEvent(unsigned long kind) {
  platform::Events& events = *platform::current().events;
  std::unique_ptr<platform::Event> event;
  platform::OSStatus status =
      events.createEvent(kFwDlEventClass, static_cast<std::uint32_t>(kind), event);
  if (status == platform::noErr) {
    status =
        events.setParameter(*event, platform::kEventParamDirectObject, static_cast<void*>(this));
  }
  if (status != platform::noErr) {
    event.reset();
    Log<3>() << buildErrorMessage("Failed to create or post FirmwareDownloader event.", status)
             << std::flush;
    return;
  }
  events.postToMainQueue(std::move(event));
}
