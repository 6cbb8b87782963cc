#include <cstdint>
#include <functional>
#include <initializer_list>
#include <random>

#include "UsbInterfaceTest.h"
#include "WatchedMemory.h"

namespace {

using testing::ElementsAre;

constexpr const char* kClear = "clearPipeStallBothEnds printer/7 pipe=2";

std::string readOf(unsigned size, unsigned timeout = 20000) {
  const std::string time = std::to_string(timeout);
  return "readPipeAsyncTO printer/7 pipe=2 size=" + std::to_string(size) + " timeouts=" + time +
         "," + time;
}

// `count` bytes that do not repeat within 26.
std::string letters(std::size_t count, std::size_t from = 0) {
  std::string text;
  for (std::size_t i = from; i < from + count; ++i) text += static_cast<char>('a' + i % 26);
  return text;
}

// Does something when it is told.
class ActingNotifier : public AsyncIoNotifier {
 public:
  explicit ActingNotifier(std::function<void()> action) : mAction(std::move(action)) {}
  void complete() override { act(); }
  void failed(const std::string&) override { act(); }

  int times() const { return mTimes; }

 private:
  void act() {
    ++mTimes;
    mAction();
  }

  std::function<void()> mAction;
  int mTimes = 0;
};

class UsbInterfaceReadTest : public UsbInterfaceTest {
 protected:
  void SetUp() override { makeOpen(); }
};

TEST_F(UsbInterfaceReadTest, WholePacketsAreOneTransferIntoTheCallersBuffer) {
  read(192);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(192)));
  EXPECT_EQ(mUsb.transfers().front()->target, mBuffer.data());
  send(letters(192));
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
  EXPECT_EQ(mBuffer, letters(192));
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre());
}

TEST_F(UsbInterfaceReadTest, OnePacketExactlyDoesNotTouchTheShortReadBuffer) {
  read(64);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
  EXPECT_EQ(mUsb.transfers().front()->target, mBuffer.data());
  send(letters(64));
  EXPECT_EQ(mBuffer, letters(64));
  EXPECT_THAT(mPlatform.takeEntries(), ElementsAre());
}

TEST_F(UsbInterfaceReadTest, OneByteLessThanAPacketGoesThroughTheShortReadBuffer) {
  read(63);
  EXPECT_NE(mUsb.transfers().front()->target, mBuffer.data());
  send(letters(64));
  EXPECT_EQ(mBuffer, letters(63));
  read(1);
  EXPECT_EQ(mBuffer, letters(1, 63));
}

TEST_F(UsbInterfaceReadTest, IsNotCompleteBeforeTheRunLoopSaysSo) {
  read(64);
  mUsb.completeRead(letters(64));
  EXPECT_THAT(mNotifier.told(), ElementsAre());
  mLoop.runAllLater();
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
}

TEST_F(UsbInterfaceReadTest, RestBehindWholePacketsGoesThroughTheShortReadBuffer) {
  read(100);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
  EXPECT_EQ(mUsb.transfers().front()->target, mBuffer.data());

  send(letters(64));
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
  EXPECT_NE(mUsb.transfers().front()->target, mBuffer.data() + 64);
  EXPECT_THAT(mNotifier.told(), ElementsAre());

  send(letters(64, 64));
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
  EXPECT_EQ(mBuffer, letters(100));
  EXPECT_THAT(mPlatform.takeEntries(),
              ElementsAre(LogEntry{7, "SRB::handleReadCompletion 64 bytes added"},
                          LogEntry{7,
                                   "SRB::read requested 36; copying 36; 28 bytes left in short "
                                   "read buffer"}));

  // What is left serves the next read, however long, before the device is asked.
  read(30);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
  EXPECT_EQ(mBuffer.substr(0, 28), letters(28, 100));
  send("YZ");
  EXPECT_EQ(mBuffer, letters(28, 100) + "YZ");
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete"));
}

TEST_F(UsbInterfaceReadTest, ReadShorterThanAPacketAsksForAWholeOne) {
  read(16);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
  send(letters(16));
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
  EXPECT_EQ(mBuffer, letters(16));
}

TEST_F(UsbInterfaceReadTest, SurplusOfAPacketServesLaterReadsWithoutTheDevice) {
  read(1);
  send(letters(64));
  mUsb.takeCalls();
  EXPECT_EQ(mBuffer, letters(1));

  read(40);
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete"));
  EXPECT_EQ(mBuffer, letters(40, 1));
  read(23);
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete", "complete"));
  EXPECT_EQ(mBuffer, letters(23, 41));
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre());

  read(1);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
}

TEST_F(UsbInterfaceReadTest, SurplusServesTheStartOfALongReadToo) {
  read(1);
  send(letters(11));
  mUsb.takeCalls();

  read(138);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(128)));
  EXPECT_EQ(mUsb.transfers().front()->target, mBuffer.data() + 10);
  send(letters(128, 11));
  EXPECT_EQ(mBuffer, letters(138, 1));
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete"));
}

TEST_F(UsbInterfaceReadTest, ShortTransferIsContinuedWithWhatIsStillWanted) {
  read(192);
  send(letters(50));
  send(letters(64, 50));
  send(letters(64, 114));
  EXPECT_THAT(mNotifier.told(), ElementsAre());
  send(letters(14, 178));
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(192), kClear, readOf(128), kClear,
                                            readOf(64), kClear, readOf(64)));
  EXPECT_EQ(mBuffer, letters(192));
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
}

TEST_F(UsbInterfaceReadTest, ShortReadIsContinuedWhenThePacketHadTooLittle) {
  read(10);
  send("abc");
  EXPECT_THAT(mNotifier.told(), ElementsAre());
  send("defghijKL");
  EXPECT_EQ(mBuffer, "abcdefghij");
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64), kClear, readOf(64)));
  read(2);
  EXPECT_EQ(mBuffer, "KL");
}

TEST_F(UsbInterfaceReadTest, TransferOfNothingIsIssuedAgain) {
  read(128);
  send("");
  send("");
  EXPECT_THAT(mUsb.takeCalls(),
              ElementsAre(kClear, readOf(128), kClear, readOf(128), kClear, readOf(128)));
  send(letters(128));
  EXPECT_EQ(mBuffer, letters(128));
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
}

TEST_F(UsbInterfaceReadTest, EmptyPacketIsReadAgain) {
  read(4);
  send("");
  EXPECT_THAT(mNotifier.told(), ElementsAre());
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64), kClear, readOf(64)));
  send("abcd");
  EXPECT_EQ(mBuffer, "abcd");
}

TEST_F(UsbInterfaceReadTest, TimeOutIsThatOfEachTransfer) {
  read(70, 3000);
  send(letters(64));
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64, 3000), kClear, readOf(64, 3000)));
}

TEST_F(UsbInterfaceReadTest, StreamArrivesUnbrokenHoweverItIsCut) {
  for (const std::uint16_t packet :
       std::initializer_list<std::uint16_t>{1, 3, 8, 63, 64, 512, 65535}) {
    SCOPED_TRACE(packet);
    makeOpen({outPipe(), inPipe(packet)});
    std::mt19937 random(1);
    std::size_t sent = 0;
    std::string received;
    while (received.size() < 5000) {
      read(1 + random() % 300);
      while (!mUsb.transfers().empty()) {
        const std::size_t most = mUsb.transfers().front()->size;
        const std::size_t count = random() % 4 == 0 ? most : random() % (most + 1);
        send(letters(count, sent));
        sent += count;
      }
      received += mBuffer;
      ASSERT_THAT(mNotifier.told().back(), "complete");
    }
    EXPECT_EQ(received, letters(received.size()));
  }
}

TEST_F(UsbInterfaceReadTest, FailedTransferIsToldWithItsCodeAndNotRetried) {
  read(64);
  fail(platform::kIOUSBTransactionTimeout);
  EXPECT_THAT(mNotifier.told(), ElementsAre("failed: Async read failed: I/O Kit error=0xe0004051"));
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbInterfaceReadTest, CodeHasNoLeadingZeros) {
  read(1);
  fail(0x1f);
  EXPECT_THAT(mNotifier.told(), ElementsAre("failed: Async read failed: I/O Kit error=0x1f"));
}

TEST_F(UsbInterfaceReadTest, FailureOfALaterPartEndsTheRead) {
  read(100);
  send(letters(64));
  fail(platform::kIOUSBPipeStalled);
  EXPECT_THAT(mNotifier.told(), ElementsAre("failed: Async read failed: I/O Kit error=0xe000404f"));
}

TEST_F(UsbInterfaceReadTest, NextReadAfterAFailureStartsAfresh) {
  read(64);
  fail(platform::kIOReturnIOError);
  read(3);
  send("abc");
  EXPECT_EQ(mBuffer, "abc");
  EXPECT_THAT(mNotifier.told(),
              ElementsAre("failed: Async read failed: I/O Kit error=0xe00002ca", "complete"));
}

TEST_F(UsbInterfaceReadTest, StallThatCannotBeClearedIsThrownAtTheCaller) {
  mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNoDevice);
  EXPECT_EQ(thrown<IoKitException>([&] { read(64); }),
            "Failed to clear pipe stall. [return value = 0xe00002c0]");
  EXPECT_THAT(mNotifier.told(), ElementsAre());
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbInterfaceReadTest, TransferThatCannotBeIssuedIsThrownAtTheCaller) {
  mUsb.script("readPipeAsyncTO", platform::kIOReturnNoMemory);
  EXPECT_EQ(thrown<IoKitException>([&] { read(64); }),
            "Async read request failed. [return value = 0xe00002bd]");
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceReadTest, CallerGetsTheFailureEvenWhenBufferedBytesCameFirst) {
  read(1);
  send("abc");
  mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNoDevice);
  EXPECT_EQ(thrown<IoKitException>([&] { read(5); }),
            "Failed to clear pipe stall. [return value = 0xe00002c0]");
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
}

TEST_F(UsbInterfaceReadTest, StallThatCannotBeClearedBetweenPartsIsToldAsFailed) {
  read(100);
  mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNotResponding);
  send(letters(64));
  EXPECT_THAT(mNotifier.told(),
              ElementsAre("failed: Failed to clear pipe stall. [return value = 0xe00002ed]"));
}

TEST_F(UsbInterfaceReadTest, LaterPartThatCannotBeIssuedIsToldAsFailed) {
  read(10);
  mUsb.script("readPipeAsyncTO", platform::kIOReturnNoDevice);
  send("abc");
  EXPECT_THAT(mNotifier.told(),
              ElementsAre("failed: Async read request failed. [return value = 0xe00002c0]"));
}

TEST_F(UsbInterfaceReadTest, UnpluggedDeviceFailsTheNextPart) {
  read(100);
  mUsb.completeRead(letters(64));
  mUsb.detach(mDevice);
  mLoop.runAllLater();
  EXPECT_THAT(mNotifier.told(),
              ElementsAre("failed: Failed to clear pipe stall. [return value = 0xe00002c0]"));
}

TEST_F(UsbInterfaceReadTest, UnpluggedDeviceFailsThePartUnderWay) {
  read(100);
  mUsb.detach(mDevice);
  mLoop.runAllLater();
  EXPECT_THAT(mNotifier.told(), ElementsAre("failed: Async read failed: I/O Kit error=0xe00002c0"));
}

TEST_F(UsbInterfaceReadTest, LengthBeyond32BitsIsRefusedBeforeAnythingIsDone) {
  char byte = 0;
  EXPECT_EQ(
      thrown<IoKitException>([&] { mInterface->read(&byte, std::size_t{1} << 32, mNotifier, 1); }),
      "Async read request failed. [return value = 0xe00002c2]");
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbInterfaceReadTest, CompletionWithoutContextIsIgnored) {
  read(64);
  mUsb.transfers().front()->callback(nullptr, 0, nullptr);
  mUsb.transfers().front()->callback(nullptr, platform::kIOReturnError, nullptr);
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceReadTest, NothingIsToldAfterTheInterfaceIsGone) {
  read(64);
  mUsb.completeRead(letters(64));
  mInterface.reset();
  mLoop.runAllLater();
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceReadTest, ReadUnderWayEndsWithTheInterface) {
  read(100);
  send(letters(64));
  mInterface.reset();
  EXPECT_TRUE(mUsb.transfers().empty());
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceReadTest, CompletionMayDestroyTheInterface) {
  for (const std::size_t len : {64u, 10u}) {
    ActingNotifier notifier([&] { mInterface.reset(); });
    mBuffer.assign(len, '?');
    mInterface->read(mBuffer.data(), len, notifier, 1);
    send(letters(len));
    EXPECT_EQ(notifier.times(), 1);
    makeOpen();
  }
}

TEST_F(UsbInterfaceReadTest, FailureMayDestroyTheInterface) {
  ActingNotifier notifier([&] { mInterface.reset(); });
  mBuffer.assign(100, '?');
  mInterface->read(mBuffer.data(), 100, notifier, 1);
  mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNoDevice);
  send(letters(64));
  EXPECT_EQ(notifier.times(), 1);
}

TEST_F(UsbInterfaceReadTest, CompletionMayStartTheNextRead) {
  char byte = '?';
  ActingNotifier notifier([&] { mInterface->read(&byte, 1, mNotifier, 1); });
  mBuffer.assign(2, '?');
  mInterface->read(mBuffer.data(), 2, notifier, 1);
  send("abc");
  EXPECT_EQ(mBuffer, "ab");
  EXPECT_EQ(byte, 'c');
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
}

// What a notifier throws is its own affair: neither does it make the read a failed one, nor is the
// notifier told a second time. The second read is complete before the device is asked.
TEST_F(UsbInterfaceReadTest, RequestThatCompletionCannotStartIsNoFailureOfTheRead) {
  const std::string text = "Failed to clear pipe stall. [return value = 0xe00002c0]";
  ActingNotifier notifier([&] {
    mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNoDevice);
    mInterface->write("x", 1, mNotifier, 1);
  });
  char bytes[2];
  mInterface->read(bytes, 1, notifier, 1);
  mUsb.completeRead("ab");
  EXPECT_EQ(thrown<IoKitException>([&] { mLoop.runAllLater(); }), text);
  EXPECT_EQ(thrown<IoKitException>([&] { mInterface->read(bytes + 1, 1, notifier, 1); }), text);
  EXPECT_EQ(notifier.times(), 2);
  EXPECT_EQ(bytes[1], 'b');

  mInterface->read(bytes, 1, mNotifier, 1);
  send("c");
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
}

TEST_F(UsbInterfaceReadTest, RequestThatAFailureCannotStartIsThrownOn) {
  ActingNotifier notifier([&] {
    mUsb.script("readPipeAsyncTO", platform::kIOReturnNoDevice);
    mInterface->read(mBuffer.data(), 64, mNotifier, 1);
  });
  mBuffer.assign(64, '?');
  mInterface->read(mBuffer.data(), 64, notifier, 1);
  mUsb.failTransfer(platform::kIOReturnIOError);
  EXPECT_EQ(thrown<IoKitException>([&] { mLoop.runAllLater(); }),
            "Async read request failed. [return value = 0xe00002c0]");
  EXPECT_EQ(notifier.times(), 1);
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

using UsbInterfaceReadDeathTest = UsbInterfaceReadTest;

TEST_F(UsbInterfaceReadDeathTest, MoreBytesThanWantedAreFatal) {
  read(64);
  mUsb.claimCompletion(65);
  EXPECT_DEATH(mLoop.runAllLater(),
               "^Assertion failed: \\(numBytes <= context\\.mLen\\), function "
               "handleReadCompletion, file Host/installkit/osx/QuillUsbDevice/UsbInterface, line "
               "[0-9]+\\.\n$");
}

TEST_F(UsbInterfaceReadDeathTest, CountThatIsHugeOn64BitsIsFatalToo) {
  read(64);
  mUsb.claimCompletion((std::size_t{1} << 32) + 64);
  EXPECT_DEATH(mLoop.runAllLater(), "^Assertion failed: \\(numBytes <= context\\.mLen\\)");
}

TEST_F(UsbInterfaceReadDeathTest, MoreBytesThanAPacketAreFatal) {
  read(10);
  mUsb.claimCompletion(65);
  EXPECT_DEATH(mLoop.runAllLater(), "^Assertion failed: \\(numBytes <= capacity\\)");
}

TEST_F(UsbInterfaceReadDeathTest, ReadOfNothingIsFatalOnceThereAreBytes) {
  read(1);
  send("ab");
  EXPECT_DEATH(read(0), "^Assertion failed: \\(lenToReturn > 0\\), function read, ");
}

TEST_F(UsbInterfaceReadDeathTest, ReadOfNothingWaitsForAPacketFirst) {
  read(0);
  EXPECT_THAT(mUsb.takeCalls(), ElementsAre(kClear, readOf(64)));
  mUsb.completeRead("a");
  EXPECT_DEATH(mLoop.runAllLater(), "^Assertion failed: \\(lenToReturn > 0\\), function read, ");
}

TEST_F(UsbInterfaceReadTest, TransfersThatAreOverHoldNoMemory) {
  ActingNotifier notifier([] {});
  std::string buffer(1, '?');
  const auto transfer = [&] {
    write("?", notifier);
    mUsb.completeWrite(1);
    mLoop.runAllLater();
    mInterface->read(buffer.data(), 1, notifier, 20000);
    send("!");
    mUsb.takeCalls();
    mPlatform.takeEntries();
  };
  transfer();
  const std::size_t held = heldBytes();
  for (int i = 0; i < 100; ++i) transfer();
  EXPECT_EQ(heldBytes(), held);
  EXPECT_EQ(notifier.times(), 202);
}

}  // namespace
