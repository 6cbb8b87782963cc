// One step of a download. Tasks share the download's transport and are run in order by the
// FirmwareDownloader; each starts at most one transport operation and says how to go on.
#pragma once

#include <cstdint>

class IoTransport;

// A code with the top bit set ends the download.
enum AsyncTaskResult : std::uint32_t {
  kTaskDone = 0,          // started an operation: the next task runs on the next resume
  kTaskDoneContinue = 1,  // started nothing: the next task runs at once
  kTaskNotDone = 2,       // runs again on the next resume
  kDownloadFailed = 0x80000003,
  kDownloadUpToDate = 0x80000004,
  kDownloadSucceeded = 0x80000005,
};

class AsyncTask {
 public:
  virtual ~AsyncTask() = default;
  AsyncTask(const AsyncTask&) = delete;
  AsyncTask& operator=(const AsyncTask&) = delete;

  // Throws what the transport operation throws.
  virtual AsyncTaskResult operator()() = 0;

 protected:
  // `transport` must outlive the task's last run.
  explicit AsyncTask(IoTransport& transport) : mTransport(transport) {}

  IoTransport& mTransport;
};
