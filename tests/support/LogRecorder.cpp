#include "LogRecorder.h"

LogRecorder::LogRecorder(platform::Platform others) : mScope(completed(others)) {}

std::vector<std::string> LogRecorder::lines() const {
  std::vector<std::string> lines;
  for (const LogEntry& entry : entries()) {
    lines.push_back(std::to_string(entry.priority) + " " + entry.text);
  }
  return lines;
}

platform::Platform LogRecorder::completed(platform::Platform others) {
  others.systemLog = &mLog;
  others.statuses = &mStatuses;
  return others;
}
