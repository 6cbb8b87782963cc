#include "UsbInterfaceTest.h"

namespace {

using testing::ElementsAre;

class UsbInterfaceWriteTest : public UsbInterfaceTest {
 protected:
  void SetUp() override { makeOpen(); }

  void complete(std::size_t numBytes) {
    mUsb.completeWrite(numBytes);
    mLoop.runAllLater();
  }
};

TEST_F(UsbInterfaceWriteTest, IsOneTransferWhateverItsLength) {
  const std::string image(1000001, 'i');
  write(image);
  EXPECT_THAT(mUsb.takeCalls(),
              ElementsAre("clearPipeStallBothEnds printer/7 pipe=1",
                          "writePipeAsyncTO printer/7 pipe=1 size=1000001 timeouts=200,200"));
  EXPECT_EQ(mUsb.transfers().front()->written, image);
  complete(image.size());
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbInterfaceWriteTest, TransferTakesTheBytesFromTheCallersBuffer) {
  const std::string image(100, 'i');
  write(image);
  EXPECT_EQ(mUsb.transfers().front()->source, image.data());
}

TEST_F(UsbInterfaceWriteTest, FailedTransferIsNotRetried) {
  write("hello");
  fail(platform::kIOUSBPipeStalled);
  EXPECT_TRUE(mUsb.transfers().empty());
  EXPECT_THAT(mNotifier.told(),
              ElementsAre("failed: Async write failed: I/O Kit error=0xe000404f"));
}

TEST_F(UsbInterfaceWriteTest, StallIsClearedBeforeEachTransfer) {
  write("a");
  complete(1);
  write("b");
  complete(1);
  EXPECT_THAT(mUsb.takeCalls(),
              ElementsAre("clearPipeStallBothEnds printer/7 pipe=1",
                          "writePipeAsyncTO printer/7 pipe=1 size=1 timeouts=200,200",
                          "clearPipeStallBothEnds printer/7 pipe=1",
                          "writePipeAsyncTO printer/7 pipe=1 size=1 timeouts=200,200"));
}

TEST_F(UsbInterfaceWriteTest, ShortWriteCompletesLikeAFullOne) {
  write("hello");
  complete(2);
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
  write("hello");
  complete(0);
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete"));
}

TEST_F(UsbInterfaceWriteTest, FailedTransferIsToldWithItsCode) {
  write("hello");
  fail(platform::kIOReturnTimeout);
  EXPECT_THAT(mNotifier.told(),
              ElementsAre("failed: Async write failed: I/O Kit error=0xe00002d6"));
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbInterfaceWriteTest, CodeHasNoLeadingZeros) {
  write("hello");
  fail(0xa);
  EXPECT_THAT(mNotifier.told(), ElementsAre("failed: Async write failed: I/O Kit error=0xa"));
}

TEST_F(UsbInterfaceWriteTest, StallThatCannotBeClearedIsThrownAtTheCaller) {
  mUsb.script("clearPipeStallBothEnds", platform::kIOReturnNotResponding);
  EXPECT_EQ(thrown<IoKitException>([&] { write("x"); }),
            "Failed to clear pipe stall. [return value = 0xe00002ed]");
  EXPECT_TRUE(mUsb.transfers().empty());
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceWriteTest, TransferThatCannotBeIssuedIsThrownAtTheCaller) {
  mUsb.script("writePipeAsyncTO", platform::kIOReturnNoMemory);
  EXPECT_EQ(thrown<IoKitException>([&] { write("x"); }),
            "Async write request failed. [return value = 0xe00002bd]");
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceWriteTest, LengthBeyond32BitsIsRefusedBeforeAnythingIsDone) {
  const char byte = 0;
  EXPECT_EQ(thrown<IoKitException>(
                [&] { mInterface->write(&byte, std::size_t{1} << 32, mNotifier, 200); }),
            "Async write request failed. [return value = 0xe00002c2]");
  EXPECT_TRUE(mUsb.transfers().empty());
}

TEST_F(UsbInterfaceWriteTest, CompletionWithoutContextIsIgnored) {
  write("x");
  mUsb.transfers().front()->callback(nullptr, 0, nullptr);
  mUsb.transfers().front()->callback(nullptr, platform::kIOReturnError, nullptr);
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceWriteTest, NothingIsToldAfterTheInterfaceIsGone) {
  write("x");
  mUsb.completeWrite(1);
  mInterface.reset();
  mLoop.runAllLater();
  EXPECT_THAT(mNotifier.told(), ElementsAre());
}

TEST_F(UsbInterfaceWriteTest, ReadAndWriteMayBeUnderWayTogether) {
  read(3);
  write("hello");
  send("abc");
  complete(5);
  EXPECT_EQ(mBuffer, "abc");
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete", "complete"));
}

TEST_F(UsbInterfaceWriteTest, EachWriteTellsItsOwnNotifier) {
  RecordingNotifier second;
  write("first");
  write("second", second);
  complete(5);
  EXPECT_THAT(mNotifier.told(), ElementsAre("complete"));
  EXPECT_THAT(second.told(), ElementsAre());
  fail(platform::kIOReturnAborted);
  EXPECT_THAT(second.told(), ElementsAre("failed: Async write failed: I/O Kit error=0xe00002eb"));
}

}  // namespace
