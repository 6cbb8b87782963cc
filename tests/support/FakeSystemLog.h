// A system log that keeps what it is asked to do.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "platform/SystemLog.h"

struct LogEntry {
  int priority = 0;
  std::string text;

  bool operator==(const LogEntry&) const = default;
};

std::ostream& operator<<(std::ostream& out, const LogEntry& entry);

class FakeSystemLog : public platform::SystemLog {
 public:
  struct Opening {
    std::string identity;
    int options = 0;
    int facility = 0;

    bool operator==(const Opening&) const = default;
  };

  void open(const char* identity, int options, int facility) override;
  void write(int priority, const char* text) override;
  void close() override;

  const std::vector<LogEntry>& entries() const { return mEntries; }
  const std::vector<Opening>& openings() const { return mOpenings; }
  int closings() const { return mClosings; }

  // The entries so far, which are then forgotten.
  std::vector<LogEntry> takeEntries();

 private:
  std::vector<LogEntry> mEntries;
  std::vector<Opening> mOpenings;
  int mClosings = 0;
};
