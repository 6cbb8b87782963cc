#include <cstring>
#include <new>
#include <stdexcept>

#include "AssertionLine.h"
#include "ConnectTask.h"
#include "EngineFixture.h"
#include "HandleIeee1284DataTask.h"
#include "ReadIeee1284DataTask.h"
#include "RecordingTransport.h"
#include "SendIeee1284ReqTask.h"
#include "SuppressUstatusTask.h"
#include "WaitForAclResponseTask.h"
#include "WatchedMemory.h"

namespace {

using testing::ElementsAre;

AclResponse responseOf(const std::string& message) {
  AclResponse response;
  std::memcpy(static_cast<void*>(&response), message.data(), sizeof response);
  return response;
}

class DeviceIdTasksTest : public EngineFixture {
 protected:
  TransportRecord mRecord;
  RecordingTransport mTransport{mRecord};
};

TEST_F(DeviceIdTasksTest, ConnectOpensTheTransport) {
  ConnectTask task(mTransport);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("connect"));
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Connecting to I/O transport..."}));
}

TEST_F(DeviceIdTasksTest, ExceptionsOfTheTransportLeaveTheTask) {
  mRecord.mOnCall["connect"] = [] { throw std::runtime_error("no"); };
  ConnectTask task(mTransport);
  EXPECT_THAT([&] { task(); }, testing::ThrowsMessage<std::runtime_error>("no"));
}

TEST_F(DeviceIdTasksTest, SuppressWritesTheSameStatusOffEveryTime) {
  SuppressUstatusTask task(mTransport);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("write 34", "write 34"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre(kUstatusOffText, kUstatusOffText));
  EXPECT_EQ(mLog.entries().front(), (LogEntry{5, "Clearing unsolicited status updates..."}));
}

TEST_F(DeviceIdTasksTest, EverySuppressTaskWritesACopyOfItsOwn) {
  SuppressUstatusTask one(mTransport);
  SuppressUstatusTask other(mTransport);
  one();
  const void* const first = mRecord.mLastBuffer;
  other();
  EXPECT_NE(mRecord.mLastBuffer, first);
}

TEST_F(DeviceIdTasksTest, RequestIsTheWholeSimpleRequest) {
  SendIeee1284ReqTask task(mTransport);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("write 59"));
  EXPECT_THAT(mRecord.mWritten, ElementsAre(kDeviceIdRequest));
  EXPECT_THAT(mLog.entries(),
              ElementsAre(LogEntry{5, "Requesting IEEE 1284 device ID from the printer..."}));
}

TEST_F(DeviceIdTasksTest, WaitReadsSixteenBytesWithTheDefaultTimeout) {
  mRecord.mReplies = {kDeviceIdResponse};
  WaitForAclResponseTask task(mTransport);
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("read 16"));
  EXPECT_EQ(task.response().getIeee1284ResponseLen(), 36);
  EXPECT_EQ(mLog.entries().front(),
            (LogEntry{5, "IEEE 1284 device ID request sent to printer, waiting for response..."}));
}

TEST_F(DeviceIdTasksTest, WaitClearsTheResponseBeforeEachRead) {
  mRecord.mReplies = {kDeviceIdResponse};
  WaitForAclResponseTask task(mTransport);
  task();
  task();
  EXPECT_EQ(mRecord.mLastReadBufferBefore, std::string(16, '\0'));
}

TEST_F(DeviceIdTasksTest, ReadTakesTheAnnouncedBytes) {
  const AclResponse response = responseOf(kDeviceIdResponse);
  mRecord.mReplies = {kDeviceId100};
  ReadIeee1284DataTask task(mTransport, response);
  EXPECT_THAT(task.data(), ElementsAre());
  EXPECT_EQ(task(), kTaskDone);
  EXPECT_THAT(mRecord.mCalls, ElementsAre("read 36"));
  EXPECT_EQ(std::string(task.data().begin(), task.data().end()), kDeviceId100);
  EXPECT_THAT(
      mLog.entries(),
      ElementsAre(LogEntry{7, "ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1"},
                  LogEntry{7, "ACL Response raw: 00 ac 00 06 00 01 00 24 00 00 00 00 00 00 00 00 "},
                  LogEntry{5, "Reading IEEE 1284 device ID..."}));
}

TEST_F(DeviceIdTasksTest, ReadBeginsWithZeroBytes) {
  const AclResponse response = responseOf(kDeviceIdResponse);
  ReadIeee1284DataTask task(mTransport, response);
  task();
  EXPECT_EQ(mRecord.mLastReadBufferBefore, std::string(36, '\0'));
}

TEST_F(DeviceIdTasksTest, ReadTakesTheLargestLength) {
  const AclResponse response = responseOf(bytes("\0\xAC\0\x06\0\x01\xFF\xFF\0\0\0\0\0\0\0\0"));
  ReadIeee1284DataTask task(mTransport, response);
  task();
  EXPECT_THAT(mRecord.mCalls, ElementsAre("read 65535"));
}

// One allocation after another fails: among them the one for the bytes that are to be read.
TEST_F(DeviceIdTasksTest, ReadIsLoggedBeforeThereIsMemoryForIt) {
  const AclResponse response = responseOf(kDeviceIdResponse);
  const LogEntry entry{5, "Reading IEEE 1284 device ID..."};
  mRecord.mCalls.reserve(1);
  bool isLoggedFirst = false;
  bool hasFailed = true;
  for (std::size_t successes = 0; hasFailed; ++successes) {
    ReadIeee1284DataTask task(mTransport, response);
    mRecord.mCalls.clear();
    mLog.takeEntries();
    const FailingAllocation failing(successes);
    try {
      task();
    } catch (const std::bad_alloc&) {
      const std::vector<LogEntry>& entries = mLog.entries();
      isLoggedFirst |= mRecord.mCalls.empty() && !entries.empty() && entries.back() == entry;
    }
    hasFailed = failing.hasFailed();
  }
  EXPECT_TRUE(isLoggedFirst);
}

class DeviceIdTasksDeathTest : public DeviceIdTasksTest {
 protected:
  static testing::Matcher<const std::string&> noLength() {
    return assertionLine("expectLen > 0", "operator()",
                         "Host/installkit/osx/fwupdate/AsyncTaskQueue", 443);
  }

  static testing::Matcher<const std::string&> noText() {
    return assertionLine("len > IEEE_1284_HEADER_SIZE", "operator()",
                         "Host/installkit/osx/fwupdate/AsyncTaskQueue", 463);
  }

  void readAfter(const std::string& message) {
    const AclResponse response = responseOf(message);
    ReadIeee1284DataTask(mTransport, response)();
  }
};

TEST_F(DeviceIdTasksDeathTest, ResponseOfAnotherPrefixIsFatal) {
  EXPECT_DEATH(readAfter(bytes("\0\xAD\0\x06\0\x01\0\x24\0\0\0\0\0\0\0\0")), noLength());
}

TEST_F(DeviceIdTasksDeathTest, ResponseToAnotherCommandIsFatal) {
  EXPECT_DEATH(readAfter(bytes("\0\xAC\0\x0F\0\x01\0\x24\0\0\0\0\0\0\0\0")), noLength());
}

TEST_F(DeviceIdTasksDeathTest, ResponseOfStatusZeroIsFatal) {
  EXPECT_DEATH(readAfter(bytes("\0\xAC\0\x06\0\0\0\x24\0\0\0\0\0\0\0\0")), noLength());
}

TEST_F(DeviceIdTasksDeathTest, ResponseWithoutDataIsFatal) {
  EXPECT_DEATH(readAfter(bytes("\0\xAC\0\x06\0\x01\0\0\0\0\0\0\0\0\0\0")), noLength());
}

TEST_F(DeviceIdTasksDeathTest, FatalResponseIsLoggedBefore) {
  class PrintingLog : public FakeSystemLog {
   public:
    void write(int, const char* text) override { std::fprintf(stderr, "%s\n", text); }
  } log;
  platform::Platform printing = surfaces();
  printing.systemLog = &log;
  const platform::PlatformScope scope(printing);
  EXPECT_DEATH(readAfter(bytes("\0\xAC\0\x06\0\0\0\x24\0\0\0\0\0\0\0\0")),
               testing::Eq("ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=0\n"
                           "ACL Response raw: 00 ac 00 06 00 00 00 24 00 00 00 00 00 00 00 00 \n"
                           "Assertion failed: (expectLen > 0), function operator(), file "
                           "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443.\n"));
}

TEST_F(DeviceIdTasksDeathTest, DeviceIdWithoutTextIsFatal) {
  const std::vector<char> lengthOnly = {0, 2};
  HandleIeee1284DataTask task(mTransport, lengthOnly);
  EXPECT_DEATH(task(), noText());
}

TEST_F(DeviceIdTasksDeathTest, DeviceIdOfOneByteIsFatal) {
  const std::vector<char> halfALength = {0};
  HandleIeee1284DataTask task(mTransport, halfALength);
  EXPECT_DEATH(task(), noText());
}

TEST_F(DeviceIdTasksTest, HandleTurnsOneByteIntoTextAndGoesOn) {
  const std::vector<char> data = {0x00, 0x03, 'A'};
  HandleIeee1284DataTask task(mTransport, data);
  EXPECT_EQ(task.deviceId(), std::wstring());
  EXPECT_EQ(task(), kTaskDoneContinue);
  EXPECT_EQ(task.deviceId(), std::wstring(L"A\0", 2));
  EXPECT_THAT(mRecord.mCalls, ElementsAre());
  EXPECT_THAT(mLog.entries(), ElementsAre(LogEntry{5, "Validating IEEE 1284 device ID..."},
                                          LogEntry{5, "IEEE 1284 device ID is A"}));
}

TEST_F(DeviceIdTasksTest, HandleIgnoresTheDeviceIdsOwnLength) {
  const std::vector<char> data = {'\x7F', '\x00', 'M', 'D', 'L', ':', 'X', ';'};
  HandleIeee1284DataTask task(mTransport, data);
  task();
  EXPECT_EQ(task.deviceId(), std::wstring(L"MDL:X;\0", 7));
}

TEST_F(DeviceIdTasksTest, HandleKeepsZeroBytesAndUtf8) {
  const std::vector<char> data = {0, 6, 'A', '\0', '\xC3', '\xBC'};
  HandleIeee1284DataTask task(mTransport, data);
  task();
  EXPECT_EQ(task.deviceId(), std::wstring(L"A\0\u00FC\0", 4));
  EXPECT_EQ(mLog.entries().back(), (LogEntry{5, "IEEE 1284 device ID is A"}));
}

}  // namespace
