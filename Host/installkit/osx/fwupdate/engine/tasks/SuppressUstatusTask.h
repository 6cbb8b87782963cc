// Silences the printer's unsolicited status messages.
#pragma once

#include <array>

#include "AsyncTask.h"
#include "Pjl.h"

class SuppressUstatusTask : public AsyncTask {
 public:
  explicit SuppressUstatusTask(IoTransport& transport) : AsyncTask(transport) {}
  AsyncTaskResult operator()() override;

 private:
  const std::array<char, 34> mUstatusOff = kUstatusOff;
};
