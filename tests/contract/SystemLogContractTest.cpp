// The host's syslog, received in the place of its daemon; and the double.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "FakeSystemLog.h"
#include "SystemLogSocket.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixSystemLog.h"

namespace {

using platform::FileDescriptor;
using platform::SystemLog;
using testing::ElementsAre;

constexpr int kChildCannotRun = 77;

// What the program does with a system log.
void runProgram(SystemLog& log) {
  log.open("fwupdate", 0, SystemLog::kUserFacility);
  log.write(3, "Failed to load firmware file.");
  log.write(5, "");
  log.write(7, "100 %s %n %d");
  log.close();
}

TEST(FakeSystemLogTest, RecordsWhatTheProgramDoes) {
  FakeSystemLog log;
  runProgram(log);
  EXPECT_THAT(log.openings(), ElementsAre(FakeSystemLog::Opening{"fwupdate", 0, 8}));
  EXPECT_THAT(log.entries(), ElementsAre(LogEntry{3, "Failed to load firmware file."},
                                         LogEntry{5, ""}, LogEntry{7, "100 %s %n %d"}));
  EXPECT_EQ(log.closings(), 1);
}

// Runs in a child process in the daemon's place, which ends with 0 when `holds` is true.
void expectInChild(const std::function<bool(FileDescriptor& daemon)>& holds) {
  const pid_t child = ::fork();
  if (child == 0) {
    FileDescriptor daemon = takeLogDaemonsPlace();
    if (!daemon) ::_exit(kChildCannotRun);
    ::_exit(holds(daemon) ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kChildCannotRun) GTEST_SKIP() << "no name spaces for this user";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

void expectReceived(const std::function<void(SystemLog&)>& program,
                    const std::vector<std::string>& expected) {
  expectInChild([&](const FileDescriptor& daemon) {
    program(*platform::makePosixSystemLog());
    std::vector<std::string> received;
    while (const auto entry = receiveLogEntry(daemon)) received.push_back(*entry);
    if (received != expected) {
      for (const std::string& entry : received)
        std::fprintf(stderr, "received: %s\n", entry.c_str());
    }
    return received == expected;
  });
}

TEST(PosixSystemLogTest, SendsEachEntryWithItsPriorityAndIdentity) {
  expectReceived(&runProgram, {"<11>fwupdate: Failed to load firmware file.",
                               "<13>fwupdate: ", "<15>fwupdate: 100 %s %n %d"});
}

TEST(PosixSystemLogTest, OpensAgainUnderAnotherIdentity) {
  expectReceived(
      [](SystemLog& log) {
        runProgram(log);
        log.open("another", 0, SystemLog::kUserFacility);
        log.write(5, "again");
      },
      {"<11>fwupdate: Failed to load firmware file.",
       "<13>fwupdate: ", "<15>fwupdate: 100 %s %n %d", "<13>another: again"});
}

TEST(PosixSystemLogTest, IsCalledAsTheProgramUntilItIsOpened) {
  expectReceived([](SystemLog& log) { log.write(5, "early"); }, {"<13>test_contract_posix: early"});
}

// Runs in a child process, which ends with 0 when that holds of the log and the daemon's place.
void expectOfDaemon(const std::function<bool(SystemLog&, FileDescriptor& daemon)>& holds) {
  expectInChild([&](FileDescriptor& daemon) {
    const auto log = platform::makePosixSystemLog();
    log->open("fwupdate", 0, SystemLog::kUserFacility);
    return holds(*log, daemon);
  });
}

// Whether that thread of this process sleeps in a call of the kernel.
bool isAsleep(pid_t thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  const std::string stat{std::istreambuf_iterator<char>(file), {}};
  return stat.find(") S ") != std::string::npos;
}

TEST(PosixSystemLogTest, DaemonThatHasMuchToDoGetsAllEntries) {
  expectOfDaemon([](SystemLog& log, FileDescriptor& daemon) {
    constexpr int kMoreThanAnyQueue = 10000;
    std::vector<std::string> received;
    std::atomic<bool> isWritten = false;
    std::thread reader([&, writer = ::gettid()] {
      // It reads when the queue is full.
      while (!isAsleep(writer) && !isWritten) std::this_thread::yield();
      for (bool isLastLook = false; !isLastLook;) {
        isLastLook = isWritten;
        while (const auto entry = receiveLogEntry(daemon)) received.push_back(*entry);
      }
    });
    for (int i = 0; i < kMoreThanAnyQueue; ++i) log.write(5, "x");
    log.write(5, "last");
    isWritten = true;
    reader.join();
    return received.size() == kMoreThanAnyQueue + 1 && received.back() == "<13>fwupdate: last";
  });
}

TEST(PosixSystemLogTest, DaemonThatDoesNotReadIsNotWaitedFor) {
  expectOfDaemon([](SystemLog& log, FileDescriptor& daemon) {
    constexpr int kMoreThanAnyQueue = 10000;
    for (int i = 0; i < kMoreThanAnyQueue; ++i) log.write(5, "x");
    while (receiveLogEntry(daemon)) {
    }
    log.write(5, "once it reads again");
    return receiveLogEntry(daemon) == "<13>fwupdate: once it reads again";
  });
}

TEST(PosixSystemLogTest, DaemonThatIsStartedAnewGetsWhatFollows) {
  expectOfDaemon([](SystemLog& log, FileDescriptor& daemon) {
    log.write(5, "before");
    daemon = FileDescriptor();
    log.write(5, "meanwhile");
    daemon = listenAsLogDaemon();
    log.write(3, "after");
    return receiveLogEntry(daemon) == "<11>fwupdate: after" && !receiveLogEntry(daemon);
  });
}

TEST(PosixSystemLogTest, MirrorsEntriesToStandardErrorOnRequest) {
  const auto log = platform::makePosixSystemLog();
  testing::internal::CaptureStderr();
  log->open("fwupdate", SystemLog::kMirrorToStandardError, SystemLog::kUserFacility);
  log->write(5, "Connecting to I/O transport...");
  log->write(3, "100 %s %n");
  log->close();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "fwupdate: Connecting to I/O transport...\nfwupdate: 100 %s %n\n");
}

TEST(PosixSystemLogTest, EntryOfSeveralLinesIsOneEntry) {
  expectReceived(
      [](SystemLog& log) {
        log.open("fwupdate", SystemLog::kMirrorToStandardError, SystemLog::kUserFacility);
        log.write(5, "-> Service: Evil\nfwupdate: forged\x1B[2K\xC2\x85.");
      },
      {"<13>fwupdate: -> Service: Evil\nfwupdate: forged\x1B[2K\xC2\x85."});
}

// What standard error gets of one entry.
std::string mirrored(const std::string& text, const char* identity = "fwupdate") {
  const auto log = platform::makePosixSystemLog();
  testing::internal::CaptureStderr();
  log->open(identity, SystemLog::kMirrorToStandardError, SystemLog::kUserFacility);
  log->write(5, text.c_str());
  log->close();
  return testing::internal::GetCapturedStderr();
}

TEST(PosixSystemLogTest, MirroredEntryIsOneLineWhateverIsInIt) {
  EXPECT_EQ(mirrored("-> Service: Evil\nfwupdate: forged"),
            "fwupdate: -> Service: Evil#012fwupdate: forged\n");
  EXPECT_EQ(mirrored("a\r\tb\v\f"), "fwupdate: a#015#011b#013#014\n");
  EXPECT_EQ(mirrored("line\n"), "fwupdate: line#012\n");
  EXPECT_EQ(mirrored(""), "fwupdate: \n");
  EXPECT_EQ(mirrored("text", "fw\nupdate"), "fw#012update: text\n");
}

TEST(PosixSystemLogTest, MirroredEntryCommandsNoTerminal) {
  EXPECT_EQ(mirrored("\x1B[2K\x7F\x01."), "fwupdate: #033[2K#177#001.\n");
  EXPECT_EQ(mirrored("\xC2\x80 \xC2\x85 \xC2\x9B 2J \xC2\x9F"),
            "fwupdate: #302#200 #302#205 #302#233 2J #302#237\n");
  EXPECT_EQ(mirrored("\xE2\x80\xA8 \xE2\x80\xA9"), "fwupdate: #342#200#250 #342#200#251\n");
}

TEST(PosixSystemLogTest, MirroredEntryShowsBytesThatAreNotText) {
  EXPECT_EQ(mirrored("\x9B 2J \xFF \xC3"), "fwupdate: #233 2J #377 #303\n");
  EXPECT_EQ(mirrored("\xE2\x82 \xC0\x8A \xED\xA0\x80"),
            "fwupdate: #342#202 #300#212 #355#240#200\n");
}

TEST(PosixSystemLogTest, MirroredEntryKeepsEveryOtherCharacter) {
  const std::string text =
      " !\"#%'()*+,-./09:;<=>?@AZ[\\]^_`az{|}~ \xC2\xA0 B\xC3\xBCro \xE2\x80\xA7 \xE2\x80\xAA "
      "\xE2\x82\xAC \xF0\x9F\x96\xA8";
  EXPECT_EQ(mirrored(text), "fwupdate: " + text + "\n");
}

TEST(PosixSystemLogTest, MirroredEntryMayHaveAnyLength) {
  const std::string text(70000, 'x');
  EXPECT_EQ(mirrored(text), "fwupdate: " + text + "\n");
}

TEST(PosixSystemLogTest, MirrorsNothingWhenItIsClosed) {
  const auto log = platform::makePosixSystemLog();
  testing::internal::CaptureStderr();
  log->open("fwupdate", SystemLog::kMirrorToStandardError, SystemLog::kUserFacility);
  log->close();
  log->write(5, "after the end");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(PosixSystemLogTest, MirrorsNothingWithoutRequest) {
  const auto log = platform::makePosixSystemLog();
  testing::internal::CaptureStderr();
  log->open("fwupdate", 0, SystemLog::kUserFacility);
  log->write(5, "Connecting to I/O transport...");
  log->close();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
