#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "FakeStatusTable.h"
#include "FakeSystemLog.h"
#include "WatchedMemory.h"
#include "platform/LogHistory.h"
#include "platform/Platform.h"

namespace {

using platform::DownloadObservers;
using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::LogHistory;
using platform::Text;
using testing::ElementsAre;

// Writes down which errors it is told of; logs one itself each time, when it has a log.
class Listener final : public platform::DownloadObserver {
 public:
  std::vector<std::string> errors;
  platform::SystemLog* log = nullptr;

  void downloadBegan(const Text&, const Text&) noexcept override {}
  void phaseBegan(DownloadPhase, std::chrono::milliseconds) noexcept override {}
  void versionsKnown(unsigned int, unsigned int) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string& entry) noexcept override {
    errors.push_back(entry);
    if (log != nullptr) log->write(3, "The observer failed, too.");
  }
  void downloadEnded(DownloadOutcome) noexcept override {}
};

class LogHistoryTest : public testing::Test {
 protected:
  LogHistoryTest() {
    observers.add(history);
    observers.add(listener);
  }

  void begin() { observers.downloadBegan(Text::fromUtf8("Office"), Text()); }
  void end() { observers.downloadEnded(DownloadOutcome::Failed); }

  std::vector<std::string> kept() const {
    std::vector<std::string> texts;
    for (const LogHistory::Entry& entry : history.entries()) texts.push_back(entry.text);
    return texts;
  }
  std::vector<std::string> ofDownload() const {
    std::vector<std::string> texts;
    for (const LogHistory::Entry& entry : history.entriesOfDownload()) texts.push_back(entry.text);
    return texts;
  }

  FakeSystemLog host;
  LogHistory::Time now{std::chrono::seconds(1000000000)};
  LogHistory history{host, [this] { return now; }};
  Listener listener;
  DownloadObservers observers;
  platform::PlatformScope scope{{.downloadObserver = &observers}};
};

TEST_F(LogHistoryTest, HostGetsWhatTheProgramWrites) {
  history.open("fwupdate", platform::SystemLog::kMirrorToStandardError, 8);
  history.write(3, "Failed to load firmware file.");
  history.write(5, "");
  history.write(7, "100 %s \x80\n");
  history.close();
  EXPECT_THAT(host.openings(), ElementsAre(FakeSystemLog::Opening{"fwupdate", 0x20, 8}));
  EXPECT_THAT(host.entries(), ElementsAre(LogEntry{3, "Failed to load firmware file."},
                                          LogEntry{5, ""}, LogEntry{7, "100 %s \x80\n"}));
  EXPECT_EQ(host.closings(), 1);
}

TEST_F(LogHistoryTest, KeepsLevelTimeAndText) {
  history.write(5, "Connecting to I/O transport...");
  now += std::chrono::seconds(5);
  history.write(3, "Unable to write data");
  ASSERT_EQ(history.entries().size(), 2u);
  EXPECT_EQ(history.entries()[0].priority, 5);
  EXPECT_EQ(history.entries()[0].time, LogHistory::Time(std::chrono::seconds(1000000000)));
  EXPECT_EQ(history.entries()[0].text, "Connecting to I/O transport...");
  EXPECT_EQ(history.entries()[1].priority, 3);
  EXPECT_EQ(history.entries()[1].time, LogHistory::Time(std::chrono::seconds(1000000005)));
  EXPECT_EQ(history.entries()[1].text, "Unable to write data");
}

TEST_F(LogHistoryTest, ForgetsTheOldestBeyondTwoHundred) {
  for (int i = 0; i < 1000; ++i) history.write(5, std::to_string(i).c_str());
  ASSERT_EQ(history.entries().size(), 200u);
  EXPECT_EQ(history.entries().front().text, "800");
  EXPECT_EQ(history.entries().back().text, "999");
  EXPECT_EQ(host.entries().size(), 1000u);
}

TEST_F(LogHistoryTest, CutsALongTextAtAWholeCharacter) {
  const std::string text = std::string(999, 'x') + "\xC3\xBC";
  history.write(5, text.c_str());
  history.write(5, (std::string(998, 'x') + "\xC3\xBC!").c_str());
  history.write(5, (std::string(999, 'x') + "\xC3\xC3").c_str());
  EXPECT_THAT(kept(), ElementsAre(std::string(999, 'x'), std::string(998, 'x') + "\xC3\xBC",
                                  std::string(999, 'x') + "\xC3"));
  EXPECT_EQ(host.entries()[0].text, text);
}

TEST_F(LogHistoryTest, TellsOfErrorsWrittenDuringADownload) {
  history.write(3, "before");
  begin();
  history.write(3, "Unable to write data");
  history.write(5, "a notice");
  history.write(7, "a dump");
  end();
  history.write(3, "after");
  EXPECT_THAT(listener.errors, ElementsAre("Unable to write data"));
}

TEST_F(LogHistoryTest, TellsOfTheWholeErrorHoweverLong) {
  begin();
  history.write(3, std::string(5000, 'x').c_str());
  EXPECT_THAT(listener.errors, ElementsAre(std::string(5000, 'x')));
}

TEST_F(LogHistoryTest, WhatAnObserverLogsIsKeptAndNotTold) {
  listener.log = &history;
  begin();
  history.write(3, "Unable to write data");
  history.write(3, "Failed to load firmware file.");
  EXPECT_THAT(listener.errors,
              ElementsAre("Unable to write data", "Failed to load firmware file."));
  EXPECT_THAT(ofDownload(),
              ElementsAre("Unable to write data", "The observer failed, too.",
                          "Failed to load firmware file.", "The observer failed, too."));
}

TEST_F(LogHistoryTest, KnowsTheEntriesOfTheLastDownload) {
  history.write(5, "before");
  EXPECT_THAT(ofDownload(), ElementsAre());
  begin();
  history.write(5, "first 1");
  history.write(3, "first 2");
  EXPECT_THAT(ofDownload(), ElementsAre("first 1", "first 2"));
  end();
  history.write(5, "between");
  EXPECT_THAT(ofDownload(), ElementsAre("first 1", "first 2"));
  begin();
  EXPECT_THAT(ofDownload(), ElementsAre());
  history.write(5, "second");
  end();
  EXPECT_THAT(ofDownload(), ElementsAre("second"));
}

class Nowhere final : public platform::SystemLog {
 public:
  void open(const char*, int, int) override {}
  void write(int, const char*) override { ++entries; }
  void close() override {}

  int entries = 0;
};

TEST_F(LogHistoryTest, WhatTheHostSaidIsKeptAndReachesNoLog) {
  FakeStatusTable statuses;
  statuses.define(111, "ECONNREFUSED", "Connection refused");
  const platform::PlatformScope named({.statuses = &statuses, .downloadObserver = &observers});
  begin();
  history.noteHostError("Connecting", 111);
  EXPECT_THAT(ofDownload(), ElementsAre("Connecting failed: ECONNREFUSED (Connection refused)"));
  EXPECT_EQ(history.entries().back().priority, 3);
  EXPECT_THAT(host.entries(), ElementsAre());
  EXPECT_THAT(listener.errors, ElementsAre());
}

// Whichever of its allocations fails: the host has the entry, and nothing is thrown.
TEST_F(LogHistoryTest, LackOfMemoryReachesNobody) {
  const platform::PlatformScope nobodyWatches({});
  const std::string text(500, 'x');
  bool hasFailed = true;
  for (std::size_t successes = 0; hasFailed; ++successes) {
    Nowhere nowhere;
    LogHistory forgetful(nowhere);
    forgetful.downloadBegan({}, {});
    for (int i = 0; i < 1000; ++i) forgetful.write(5, "");
    {
      const FailingAllocation failing(successes);
      forgetful.write(3, text.c_str());
      hasFailed = failing.hasFailed();
    }
    EXPECT_EQ(nowhere.entries, 1001);
    EXPECT_EQ(forgetful.entries().size(), 200u);
    EXPECT_EQ(forgetful.entries().back().text == text, successes > 0);
    ASSERT_LT(successes, 20u);
  }
}

TEST_F(LogHistoryTest, LineHasLocalTimeAndLevel) {
  ASSERT_EQ(::setenv("TZ", "XXX-5:30", 1), 0);
  ::tzset();
  const auto time = LogHistory::Time(std::chrono::seconds(1000000000));
  EXPECT_EQ(platform::lineOf({3, time, "Unable to write data", 1}),
            "2001-09-09 07:16:40 error: Unable to write data");
  EXPECT_EQ(platform::lineOf({5, time, "", 0}), "2001-09-09 07:16:40 notice: ");
  EXPECT_EQ(platform::lineOfToday({3, time, "x", 0}), "07:16:40 error: x");
  EXPECT_EQ(platform::lineOf({7, time, "x", 0}), "2001-09-09 07:16:40 debug: x");
}

}  // namespace
