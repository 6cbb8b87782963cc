// The download controller: runs one firmware download at a time as a sequence of tasks over one
// transport. It advances when a transport operation is complete, and tells the outcome to the user
// interface by dispatching a command. main() owns the only one; printer records start downloads.
// The observer of downloads hears of the outcome of one that was announced to it, before the
// command.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "AsyncTask.h"
#include "AsyncTaskQueue.h"
#include "platform/DownloadObserver.h"
#include "platform/FourCharCode.h"

// The events that a controller posts to itself through the main queue. Their direct object is the
// controller (void*); the application's handler answers them with resume() and stopTasks().
inline constexpr platform::FourCharCode kFwDlEventClass = 0x4677446C;  // 'FwDl'
inline constexpr std::uint32_t kFwDlEventResume = 1;
inline constexpr std::uint32_t kFwDlEventAsyncFailure = 2;

// The commands that tell an outcome.
inline constexpr platform::FourCharCode kDownloadSucceededCommand = 0x446C4F6B;  // 'DlOk'
inline constexpr platform::FourCharCode kDownloadFailedCommand = 0x446C4E6F;     // 'DlNo'
inline constexpr platform::FourCharCode kUpToDateCommand = 0x446C5564;           // 'DlUd'

class FirmwareDownloader {
 public:
  FirmwareDownloader();

  // Drops a running download without an outcome.
  ~FirmwareDownloader();

  FirmwareDownloader(const FirmwareDownloader&) = delete;
  FirmwareDownloader& operator=(const FirmwareDownloader&) = delete;

  // Begins a download over `transport`, which must not be null, and runs its first task. The
  // outcome may have been told before this returns. Fatal while a download runs.
  void start(std::unique_ptr<IoTransport> transport);

  // Asks the printer at the other end of `transport`, as a download does, for its device ID, and
  // ends there: `known` gets it, and no outcome is told. What fails is told as 'DlNo'. Fatal while
  // a download runs.
  void query(std::unique_ptr<IoTransport> transport,
             std::function<void(const std::wstring& deviceId)> known);

  // The operation that the last task started is complete: runs the next. An exception of a task is
  // logged and ends the download as failed; one of the outcome's handler passes on behind the end
  // of the download. The transport may be gone when this returns. Fatal when no download runs.
  void resume();

  // Ends the download as failed.
  void stopTasks();

  // Post the event that leads to resume() and to stopTasks(). A failure to post is only logged.
  void enqueueResume();
  void notifyAsyncFailure();

  // Tell an outcome: 'DlNo', 'DlUd', 'DlOk'.
  void failed();
  void upToDate();
  void succeeded();

  void postEvent(unsigned long kind);

 private:
  AsyncTaskResult runFrontTask();
  void actOn(AsyncTaskResult result);

  // Once for each announcement: what comes after it says nothing.
  void announceEnd(platform::DownloadOutcome outcome);

  friend class DownloadAnnouncement;

  AsyncTaskQueue mAsyncTaskQueue;
  bool mIsAnnounced = false;
};
