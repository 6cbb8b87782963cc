#include "FakeSystemLog.h"

#include <ostream>
#include <utility>

std::ostream& operator<<(std::ostream& out, const LogEntry& entry) {
  return out << "<" << entry.priority << "> \"" << entry.text << "\"";
}

void FakeSystemLog::open(const char* identity, int options, int facility) {
  mOpenings.push_back({identity, options, facility});
}

void FakeSystemLog::write(int priority, const char* text) { mEntries.push_back({priority, text}); }

void FakeSystemLog::close() { ++mClosings; }

std::vector<LogEntry> FakeSystemLog::takeEntries() { return std::exchange(mEntries, {}); }
