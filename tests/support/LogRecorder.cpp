#include "LogRecorder.h"

LogRecorder::LogRecorder(platform::Platform others) : mScope(completed(others)) {}

platform::Platform LogRecorder::completed(platform::Platform others) {
  others.systemLog = &mLog;
  others.statuses = &mStatuses;
  return others;
}
