#include "platform/LogHistory.h"

#include <array>
#include <ctime>
#include <new>
#include <utility>

#include "platform/Platform.h"
#include "platform/Status.h"
#include "platform/Utf8.h"

namespace platform {
namespace {

// What is not UTF-8 counts byte by byte.
std::string_view beginningOf(std::string_view text) {
  std::size_t size = 0;
  while (size < text.size()) {
    const auto character = firstUtf8Character(text.substr(size));
    const std::size_t next = size + (character ? character->bytes : 1);
    if (next > LogHistory::kLongestText) break;
    size = next;
  }
  return text.substr(0, size);
}

const char* nameOf(int priority) {
  if (priority <= LogHistory::kError) return "error";
  return priority >= 7 ? "debug" : "notice";
}

std::string line(const char* timeFormat, const LogHistory::Entry& entry) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(entry.time);
  std::array<char, 32> time{};
  if (const std::tm* local = std::localtime(&seconds)) {
    static_cast<void>(std::strftime(time.data(), time.size(), timeFormat, local));
  }
  return std::string(time.data()) + nameOf(entry.priority) + ": " + entry.text;
}

}  // namespace

LogHistory::LogHistory(SystemLog& host, std::function<Time()> now)
    : mHost(host), mNow(std::move(now)) {}

std::vector<LogHistory::Entry> LogHistory::entriesOfDownload() const {
  std::vector<Entry> found;
  for (const Entry& entry : mEntries) {
    if (entry.download != 0 && entry.download == mDownloads) found.push_back(entry);
  }
  return found;
}

void LogHistory::open(const char* identity, int options, int facility) {
  mHost.open(identity, options, facility);
}

void LogHistory::write(int priority, const char* text) {
  mHost.write(priority, text);
  try {
    keep(priority, text);
    if (priority <= kError && mInDownload) tell(text);
  } catch (const std::bad_alloc&) {
    // The host has it.
  }
}

void LogHistory::close() { mHost.close(); }

void LogHistory::noteHostError(const char* operation, int error) noexcept {
  try {
    const StatusTable& statuses = *current().statuses;
    keep(kError, std::string(operation) + " failed: " + statuses.name(error) + " (" +
                     statuses.description(error) + ")");
  } catch (const std::bad_alloc&) {
    // The program's own text remains.
  }
}

void LogHistory::downloadBegan(const Text&, const Text&) noexcept {
  ++mDownloads;
  mInDownload = true;
}

void LogHistory::downloadEnded(DownloadOutcome) noexcept { mInDownload = false; }

void LogHistory::keep(int priority, std::string_view text) {
  Entry entry{priority, mNow(), std::string(beginningOf(text)), mInDownload ? mDownloads : 0};
  mEntries.push_back(std::move(entry));
  if (mEntries.size() > kMostEntries) mEntries.pop_front();
}

// What an observer itself logs meanwhile is kept, but not told.
void LogHistory::tell(const char* error) {
  if (mIsTelling) return;
  const std::string entry(error);
  mIsTelling = true;
  downloadObserver().errorLogged(entry);
  mIsTelling = false;
}

std::string lineOf(const LogHistory::Entry& entry) { return line("%Y-%m-%d %H:%M:%S ", entry); }

std::string lineOfToday(const LogHistory::Entry& entry) { return line("%H:%M:%S ", entry); }

}  // namespace platform
