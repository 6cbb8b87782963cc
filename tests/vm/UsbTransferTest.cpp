// Opening interfaces and transferring bytes over their pipes, and every way in which that fails.
#include <gmock/gmock.h>
#include <unistd.h>

#include "AsOtherUser.h"
#include "OtherProgram.h"
#include "UsbHostTest.h"

using platform::io_service_t;
using platform::IOReturn;
using platform::kIOReturnSuccess;
using testing::AnyOf;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_literals;

namespace {

constexpr std::uint16_t kPacket = 512;

class UsbTransferTest : public UsbHostTest {
 protected:
  void plugIn(const std::vector<std::string>& options = {}) {
    mPrinter = std::make_unique<UsbPrinterProcess>(options);
    mDevice = awaitPrinter();
    ASSERT_NE(mDevice, 0u);
    ASSERT_TRUE(mLoop.runUntil([] { return kernelDriver() == "usblp"; }));
  }

  void openAcl(const std::vector<std::string>& options = {}) {
    plugIn(options);
    mAcl = openInterface(mDevice, kPrinterClass);
  }

  // The whole answer to a request for the device ID.
  std::string ask() {
    EXPECT_EQ(write(*mAcl, kStatusOff).result, kIOReturnSuccess);
    EXPECT_EQ(write(*mAcl, kIdRequest).result, kIOReturnSuccess);
    std::string head;
    std::string id;
    EXPECT_EQ(read(*mAcl, head, kPacket).result, kIOReturnSuccess);
    EXPECT_EQ(read(*mAcl, id, kPacket).result, kIOReturnSuccess);
    return head + id;
  }

  std::unique_ptr<UsbPrinterProcess> mPrinter;
  io_service_t mDevice = 0;
  std::unique_ptr<platform::UsbInterfaceObject> mAcl;
};

const std::string kDeviceId =
    "MFG:Veltra;CMD:PJL,ACL;MDL:KX350T;CLS:PRINTER;DES:Veltra KX350T;SN:VP000001;LIC:QT725013;"
    "FWVER:00000100;";
const std::string kAnswer =
    "\x00\xAC\x00\x06\x00\x01\x00\x6A\x00\x00\x00\x00\x00\x00\x00\x00\x00\x6A"s + kDeviceId;

TEST_F(UsbTransferTest, TheKernelDriverGivesWayAndComesBack) {
  plugIn();
  const auto acl = interfaceObject(mDevice, kPrinterClass);
  ASSERT_EQ(acl->open(), kIOReturnSuccess);
  EXPECT_EQ(kernelDriver(), "usbfs");
  EXPECT_EQ(acl->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(acl->close(), kIOReturnSuccess);
  EXPECT_EQ(kernelDriver(), "usblp");
  EXPECT_EQ(acl->close(), platform::kIOReturnNotOpen);
}

TEST_F(UsbTransferTest, TheKernelDriverComesBackWithTheEndOfTheObject) {
  openAcl();
  mAcl.reset();
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbTransferTest, PipesCountInTheOrderOfTheDescriptors) {
  openAcl({"--fault", "in-pipe-first"});
  std::uint8_t count = 0;
  ASSERT_EQ(mAcl->getNumEndpoints(count), kIOReturnSuccess);
  EXPECT_EQ(count, 2);
  platform::UsbPipeProperties properties;
  ASSERT_EQ(mAcl->getPipeProperties(1, properties), kIOReturnSuccess);
  EXPECT_EQ(properties.direction, 1);
  EXPECT_EQ(properties.transferType, 2);
  EXPECT_EQ(properties.maxPacketSize, kPacket);
  ASSERT_EQ(mAcl->getPipeProperties(2, properties), kIOReturnSuccess);
  EXPECT_EQ(properties.direction, 0);
  EXPECT_EQ(mAcl->getPipeProperties(0, properties), platform::kIOUSBUnknownPipeErr);
  EXPECT_EQ(mAcl->getPipeProperties(3, properties), platform::kIOUSBUnknownPipeErr);
  EXPECT_EQ(ask(), kAnswer);
}

TEST_F(UsbTransferTest, BothInterfacesAreUsedTogether) {
  openAcl();
  const auto ews = openInterface(mDevice, kVendorClass);
  EXPECT_EQ(write(*ews, "hello"), (TransferEnd{kIOReturnSuccess, 5}));
  EXPECT_EQ(ask(), kAnswer);
  std::string echo;
  EXPECT_EQ(read(*ews, echo, kPacket), (TransferEnd{kIOReturnSuccess, 5}));
  EXPECT_EQ(echo, "hello");
  mAcl.reset();
  EXPECT_EQ(write(*ews, "again"), (TransferEnd{kIOReturnSuccess, 5}));
}

TEST_F(UsbTransferTest, NothingWorksBeforeItIsOpened) {
  plugIn();
  const auto acl = interfaceObject(mDevice, kPrinterClass);
  std::uint8_t count = 0;
  platform::UsbEventSource* source = nullptr;
  EXPECT_EQ(acl->getNumEndpoints(count), platform::kIOReturnNotOpen);
  EXPECT_EQ(acl->createAsyncEventSource(source), platform::kIOReturnNotOpen);
  EXPECT_EQ(acl->clearPipeStallBothEnds(1), platform::kIOReturnNotOpen);
  ASSERT_EQ(acl->open(), kIOReturnSuccess);
  EXPECT_EQ(write(*acl, "x"), (TransferEnd{platform::kIOUSBNoAsyncPortErr, 0}));
}

TEST_F(UsbTransferTest, PipesThatCannotDoItRefuse) {
  openAcl();
  char byte = 0;
  TransferRecorder recorder;
  const auto read = [&](std::uint8_t pipe) {
    return mAcl->readPipeAsyncTO(pipe, &byte, 1, 100, 100, TransferRecorder::ended, &recorder);
  };
  EXPECT_EQ(read(255), platform::kIOUSBUnknownPipeErr);
  EXPECT_EQ(read(pipe(*mAcl, 0)), platform::kIOReturnBadArgument);
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(255), platform::kIOUSBUnknownPipeErr);
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_THAT(recorder.ends(), IsEmpty());
}

TEST_F(UsbTransferTest, WithoutARightListingWorksAndOpeningIsNotPermitted) {
  plugIn();
  const AsOtherUser nobody;
  EXPECT_EQ(text(mDevice, "USB Serial Number"), "VP000001");
  EXPECT_EQ(interfaceObject(mDevice, kPrinterClass)->open(), platform::kIOReturnNotPermitted);
  EXPECT_EQ(deviceObject(mDevice)->open(), platform::kIOReturnNotPermitted);
}

TEST_F(UsbTransferTest, AnInterfaceOfAnotherProgramIsExclusive) {
  plugIn();
  const OtherProgram other("VP000001", 1);
  EXPECT_EQ(interfaceObject(mDevice, kPrinterClass)->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(interfaceObject(mDevice, kVendorClass)->open(), kIOReturnSuccess);
}

TEST_F(UsbTransferTest, AnInterfaceIsOpenedByOneObject) {
  openAcl();
  EXPECT_EQ(interfaceObject(mDevice, kPrinterClass)->open(), platform::kIOReturnExclusiveAccess);
}

TEST_F(UsbTransferTest, EmptyPacketsAreReadsOfNothing) {
  openAcl({"--fault", "zero-packets"});
  EXPECT_EQ(write(*mAcl, kStatusOff), (TransferEnd{kIOReturnSuccess, 34}));
  EXPECT_EQ(write(*mAcl, kIdRequest), (TransferEnd{kIOReturnSuccess, 59}));
  std::string bytes;
  EXPECT_EQ(read(*mAcl, bytes, kPacket), (TransferEnd{kIOReturnSuccess, 0}));
  EXPECT_EQ(read(*mAcl, bytes, kPacket), (TransferEnd{kIOReturnSuccess, 16}));
  EXPECT_EQ(read(*mAcl, bytes, kPacket), (TransferEnd{kIOReturnSuccess, 0}));
  EXPECT_EQ(read(*mAcl, bytes, kPacket), (TransferEnd{kIOReturnSuccess, 106}));
}

TEST_F(UsbTransferTest, APacketThatDoesNotFitIsAnOverrun) {
  openAcl();
  write(*mAcl, kStatusOff);
  write(*mAcl, kIdRequest);
  std::string bytes;
  EXPECT_EQ(read(*mAcl, bytes, 8).result, platform::kIOReturnOverrun);
}

TEST_F(UsbTransferTest, ASilentPrinterIsATimeOut) {
  openAcl();
  std::string bytes;
  EXPECT_EQ(read(*mAcl, bytes, kPacket, 100), (TransferEnd{platform::kIOUSBTransactionTimeout, 0}));
  // And nothing is lost by that.
  EXPECT_EQ(ask(), kAnswer);
}

TEST_F(UsbTransferTest, APrinterThatDoesNotTakeBytesIsATimeOut) {
  openAcl({"--fault", "hang@status-off"});
  EXPECT_EQ(write(*mAcl, kStatusOff).result, kIOReturnSuccess);
  EXPECT_EQ(write(*mAcl, std::string(1 << 20, 'x'), 200).result,
            platform::kIOUSBTransactionTimeout);
}

TEST_F(UsbTransferTest, AStallLastsUntilItIsCleared) {
  openAcl({"--fault", "stall@id-request"});
  EXPECT_EQ(write(*mAcl, kStatusOff).result, kIOReturnSuccess);
  std::string bytes;
  TransferRecorder recorder;
  bytes.resize(kPacket);
  ASSERT_EQ(mAcl->readPipeAsyncTO(pipe(*mAcl, 1), bytes.data(), kPacket, 5000, 5000,
                                  TransferRecorder::ended, &recorder),
            kIOReturnSuccess);
  EXPECT_EQ(write(*mAcl, kIdRequest).result, kIOReturnSuccess);
  EXPECT_EQ(await(recorder), (TransferEnd{platform::kIOUSBPipeStalled, 0}));
  EXPECT_EQ(read(*mAcl, bytes, kPacket), (TransferEnd{platform::kIOUSBPipeStalled, 0}));
  EXPECT_EQ(write(*mAcl, "x"), (TransferEnd{platform::kIOUSBPipeStalled, 0}));
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(pipe(*mAcl, 1)), kIOReturnSuccess);
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(pipe(*mAcl, 0)), kIOReturnSuccess);
  EXPECT_EQ(read(*mAcl, bytes, kPacket), (TransferEnd{kIOReturnSuccess, 16}));
  EXPECT_EQ(bytes, kAnswer.substr(0, 16));
}

TEST_F(UsbTransferTest, ClearingAPipeThatIsNotStalledLosesNothing) {
  openAcl();
  for (const std::string& message : {kStatusOff, kIdRequest}) {
    EXPECT_EQ(mAcl->clearPipeStallBothEnds(pipe(*mAcl, 0)), kIOReturnSuccess);
    EXPECT_EQ(write(*mAcl, message).result, kIOReturnSuccess);
  }
  std::string head;
  std::string id;
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(pipe(*mAcl, 1)), kIOReturnSuccess);
  EXPECT_EQ(read(*mAcl, head, kPacket).result, kIOReturnSuccess);
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(pipe(*mAcl, 1)), kIOReturnSuccess);
  EXPECT_EQ(read(*mAcl, id, kPacket).result, kIOReturnSuccess);
  EXPECT_EQ(head + id, kAnswer);
}

TEST_F(UsbTransferTest, ATransferAboveTheKernelsLimitIsOutOfMemory) {
  openAcl();
  EXPECT_EQ(write(*mAcl, std::string((16 << 20) + 1, 'x')),
            (TransferEnd{platform::kIOReturnNoMemory, 0}));
  EXPECT_EQ(ask(), kAnswer);
}

TEST_F(UsbTransferTest, UnpluggingEndsTheTransferAndEverythingAfterIt) {
  openAcl();
  TransferRecorder recorder;
  std::string bytes(kPacket, '\0');
  ASSERT_EQ(mAcl->readPipeAsyncTO(pipe(*mAcl, 1), bytes.data(), kPacket, 0, 0,
                                  TransferRecorder::ended, &recorder),
            kIOReturnSuccess);
  mPrinter->stop();
  EXPECT_THAT(await(recorder), Field(&TransferEnd::result, AnyOf(platform::kIOReturnIOError,
                                                                 platform::kIOReturnNoDevice)));
  ASSERT_TRUE(awaitGone());
  EXPECT_EQ(write(*mAcl, "x"), (TransferEnd{platform::kIOReturnNoDevice, 0}));
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(1), platform::kIOReturnNoDevice);
  EXPECT_EQ(mAcl->close(), kIOReturnSuccess);
  EXPECT_THAT(recorder.ends(), SizeIs(1));
}

TEST_F(UsbTransferTest, ClosingTakesBackTheTransfersWithoutAWord) {
  openAcl();
  TransferRecorder recorder;
  {
    auto bytes = std::make_unique<std::string>(kPacket, '\0');
    ASSERT_EQ(mAcl->readPipeAsyncTO(pipe(*mAcl, 1), bytes->data(), kPacket, 0, 0,
                                    TransferRecorder::ended, &recorder),
              kIOReturnSuccess);
    EXPECT_EQ(mAcl->close(), kIOReturnSuccess);
  }
  mLoop.runFor(std::chrono::milliseconds(100));
  EXPECT_THAT(recorder.ends(), IsEmpty());
}

TEST_F(UsbTransferTest, ACompletionOnItsWayIsDroppedByTheEndOfTheObject) {
  openAcl();
  TransferRecorder recorder;
  ASSERT_EQ(mAcl->writePipeAsyncTO(pipe(*mAcl, 0), kStatusOff.data(), 34, 0, 0,
                                   TransferRecorder::ended, &recorder),
            kIOReturnSuccess);
  while (mPrinter->receivedMessages().empty()) usleep(10000);
  mAcl.reset();
  mLoop.runFor(std::chrono::milliseconds(100));
  EXPECT_THAT(recorder.ends(), IsEmpty());
}

TEST_F(UsbTransferTest, AnObjectMayEndInItsOwnCompletion) {
  openAcl();
  struct Owner {
    std::unique_ptr<platform::UsbInterfaceObject> interface;
    int calls = 0;
  } owner{std::move(mAcl)};
  ASSERT_EQ(owner.interface->writePipeAsyncTO(
                pipe(*owner.interface, 0), kStatusOff.data(), 34, 0, 0,
                [](void* refCon, IOReturn, void*) {
                  static_cast<Owner*>(refCon)->interface.reset();
                  ++static_cast<Owner*>(refCon)->calls;
                },
                &owner),
            kIOReturnSuccess);
  EXPECT_TRUE(mLoop.runUntil([&] { return owner.calls == 1; }));
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbTransferTest, CompletionsWaitForARunLoop) {
  plugIn();
  mAcl = interfaceObject(mDevice, kPrinterClass);
  ASSERT_EQ(mAcl->open(), kIOReturnSuccess);
  platform::UsbEventSource* source = nullptr;
  ASSERT_EQ(mAcl->createAsyncEventSource(source), kIOReturnSuccess);
  TransferRecorder recorder;
  ASSERT_EQ(mAcl->writePipeAsyncTO(pipe(*mAcl, 0), kStatusOff.data(), 34, 0, 0,
                                   TransferRecorder::ended, &recorder),
            kIOReturnSuccess);
  mLoop.runUntil([&] { return !mPrinter->receivedMessages().empty(); });
  mLoop.runFor(std::chrono::milliseconds(50));
  EXPECT_THAT(recorder.ends(), IsEmpty());
  source->addTo(mLoop);
  EXPECT_EQ(await(recorder), (TransferEnd{kIOReturnSuccess, 34}));
}

}  // namespace
