// Replies that are fatal by design: the process ends with the assertion that support staff know.
// Everything that the process has logged stands before it on standard error.
#include <cstdio>

#include "DownloadFixture.h"
#include "platform/Platform.h"

namespace {

// Prints entries, so that what a process that aborts has logged is seen outside.
class PrintingSystemLog : public platform::SystemLog {
 public:
  void open(const char*, int, int) override {}
  void write(int priority, const char* text) override {
    std::fprintf(stderr, "%d %s\n", priority, text);
  }
  void close() override {}
};

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class FatalRepliesTest : public DownloadFixture {
 protected:
  // In the process that is to die.
  void downloadAloud() {
    PrintingSystemLog log;
    platform::Platform surfaces = platform::current();
    surfaces.systemLog = &log;
    const platform::PlatformScope scope(surfaces);
    download();
    runUntilOutcome();
  }

  void expectDeath(const Lines& log, const std::string& assertion) {
    EXPECT_DEATH(downloadAloud(), testing::Eq(joined(log) + assertion));
    mPrinter->waitFor("closed");
    stopPrinter();
    EXPECT_EQ(mPrinter->receivedMessages(), kReceivedQuery);
  }

  // Dies on the response: with its first 16 bytes, of `arrived`.
  void expectUselessResponse(const std::string& fields, const std::string& raw,
                             std::size_t arrived) {
    expectDeath(kAwaitingResponse + arriving(arrived) +
                    Lines{"7 ACL Response: " + fields, "7 ACL Response raw: " + raw + " "},
                "Assertion failed: (expectLen > 0), function operator(), file "
                "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443.\n");
  }

  // Dies on a device ID that has nothing after its length.
  void expectUselessDeviceId(const std::string& length, std::size_t bytes) {
    expectDeath(kAwaitingResponse + arriving(16 + bytes) +
                    Lines{"7 ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1",
                          "7 ACL Response raw: 00 ac 00 06 00 01 00 " + length +
                              " 00 00 00 00 00 00 00 00 ",
                          "5 Reading IEEE 1284 device ID...",
                          "5 Async read request for " + std::to_string(bytes) + " bytes.",
                          "5 Validating IEEE 1284 device ID..."},
                "Assertion failed: (len > IEEE_1284_HEADER_SIZE), function operator(), file "
                "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 463.\n");
  }
};

using FatalRepliesDeathTest = FatalRepliesTest;

TEST_F(FatalRepliesDeathTest, ResponseWithAWrongPrefix) {
  startPrinter({"merge", "wrong-prefix@id-response=0x00ad"});
  expectUselessResponse("prefix=00ad; cmd ID=0006; cmdStatus=1",
                        "00 ad 00 06 00 01 00 24 00 00 00 00 00 00 00 00", 52);
}

TEST_F(FatalRepliesDeathTest, ResponseToAnotherCommand) {
  startPrinter({"merge", "wrong-command@id-response=15"});
  expectUselessResponse("prefix=00ac; cmd ID=000f; cmdStatus=1",
                        "00 ac 00 0f 00 01 00 24 00 00 00 00 00 00 00 00", 52);
}

TEST_F(FatalRepliesDeathTest, ResponseWithStatusZero) {
  startPrinter({"merge", "wrong-status@id-response=0"});
  expectUselessResponse("prefix=00ac; cmd ID=0006; cmdStatus=0",
                        "00 ac 00 06 00 00 00 24 00 00 00 00 00 00 00 00", 52);
}

TEST_F(FatalRepliesDeathTest, ResponseWithStatusTwo) {
  startPrinter({"merge", "wrong-status@id-response=2"});
  expectUselessResponse("prefix=00ac; cmd ID=0006; cmdStatus=2",
                        "00 ac 00 06 00 02 00 24 00 00 00 00 00 00 00 00", 52);
}

TEST_F(FatalRepliesDeathTest, ResponseWithoutData) {
  startPrinter({"merge", "data-length=0"});
  expectUselessResponse("prefix=00ac; cmd ID=0006; cmdStatus=1",
                        "00 ac 00 06 00 01 00 00 00 00 00 00 00 00 00 00", 16);
}

TEST_F(FatalRepliesDeathTest, UnsolicitedBytesBeforeTheResponse) {
  startPrinter({"merge", "extra@id-request=4142"});
  EXPECT_DEATH(
      downloadAloud(),
      testing::EndsWith("7 ACL Response: prefix=4142; cmd ID=00ac; cmdStatus=6\n"
                        "7 ACL Response raw: 41 42 00 ac 00 06 00 01 00 24 00 00 00 00 00 00 \n"
                        "Assertion failed: (expectLen > 0), function operator(), file "
                        "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443.\n"));
}

TEST_F(FatalRepliesDeathTest, DeviceIdOfOneByte) {
  startPrinter({"merge", "data-length=1"});
  expectUselessDeviceId("01", 1);
}

TEST_F(FatalRepliesDeathTest, DeviceIdOfTwoBytes) {
  startPrinter({"merge", "data-length=2"});
  expectUselessDeviceId("02", 2);
}

TEST_F(FatalRepliesDeathTest, DeviceIdThatIsNoText) {
  startPrinter({"merge"}, {"--device-id", R"(DES:\xff\xfe;)"});
  EXPECT_DEATH(downloadAloud(),
               testing::EndsWith("5 IEEE 1284 device ID is DES:\xff\xfe;\n"
                                 "Assertion failed: (cfData), function constructFromCStr, file "
                                 "Host/installkit/osx/fwupdate/wcharStub, line 67.\n"));
}

}  // namespace
