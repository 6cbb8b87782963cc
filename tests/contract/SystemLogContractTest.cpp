// The host's syslog, received in the place of its daemon; and the double.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <ctime>
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

std::string localTime() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 32> text;
  const std::size_t size =
      std::strftime(text.data(), text.size(), "%b %e %H:%M:%S", std::localtime(&now));
  return {text.data(), size};
}

TEST(PosixSystemLogTest, EntriesBeginWithTheLocalTime) {
  expectOfDaemon([](SystemLog& log, FileDescriptor& daemon) {
    ::setenv("TZ", "UTC-5:30", 1);
    ::tzset();
    std::string before;
    std::array<char, 64> entry;
    ssize_t size = 0;
    do {  // until all of it is within a second
      before = localTime();
      log.write(3, "x");
      size = ::recv(daemon.get(), entry.data(), entry.size(), 0);
    } while (localTime() != before);
    return std::string(entry.data(), static_cast<std::size_t>(size)) ==
           "<11>" + before + " fwupdate: x";
  });
}

// Whether that thread of this process sleeps in a call of the kernel.
bool isAsleep(pid_t thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  const std::string stat{std::istreambuf_iterator<char>(file), {}};
  return stat.find(") S ") != std::string::npos;
}

// Somebody else's entries, as many as the daemon's queue has room for.
std::size_t fillQueue() {
  const FileDescriptor sender(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{AF_UNIX, "/dev/log"};
  std::size_t sent = 0;
  while (::sendto(sender.get(), "<13>", 4, MSG_DONTWAIT,
                  reinterpret_cast<const sockaddr*>(&address), sizeof address) >= 0) {
    ++sent;
  }
  return sent;
}

TEST(PosixSystemLogTest, DaemonThatHasMuchToDoGetsAllEntries) {
  expectOfDaemon([](SystemLog& log, FileDescriptor& daemon) {
    constexpr int kMoreThanAnyQueue = 10000;
    const std::size_t before = fillQueue();
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
    return received.size() == before + kMoreThanAnyQueue + 1 &&
           received.back() == "<13>fwupdate: last";
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

TEST(PosixSystemLogTest, DaemonThatIsStartedAnewGetsTheNextEntry) {
  expectOfDaemon([](SystemLog& log, FileDescriptor& daemon) {
    log.write(5, "before");
    daemon = listenAsLogDaemon();
    log.write(3, "after");
    return receiveLogEntry(daemon) == "<11>fwupdate: after" && !receiveLogEntry(daemon);
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
