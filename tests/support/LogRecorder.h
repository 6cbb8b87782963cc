// Installs, for its own lifetime, a platform whose log and status table are doubles. Fixtures hold
// one and give it the other doubles that their tests need; those must live longer.
#pragma once

#include <string>
#include <vector>

#include "FakeStatusTable.h"
#include "FakeSystemLog.h"
#include "platform/Platform.h"

class LogRecorder {
 public:
  // The log and the status table of `others` are replaced.
  explicit LogRecorder(platform::Platform others = {});

  FakeSystemLog& log() { return mLog; }
  FakeStatusTable& statuses() { return mStatuses; }

  const std::vector<LogEntry>& entries() const { return mLog.entries(); }
  std::vector<LogEntry> takeEntries() { return mLog.takeEntries(); }

  // Each entry as "PRIORITY TEXT".
  std::vector<std::string> lines() const;

 private:
  platform::Platform completed(platform::Platform others);

  FakeSystemLog mLog;
  FakeStatusTable mStatuses;
  platform::PlatformScope mScope;
};
