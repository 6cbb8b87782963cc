// What the program relies on in every USB registry, the double included, when it opens an interface
// and transfers bytes.
#include <gmock/gmock.h>

#include <array>

#include "UsbContract.h"

namespace {

using platform::io_service_t;
using platform::IOReturn;
using platform::kIOReturnSuccess;
using platform::UsbDirection;
using testing::AnyOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

using Fault = PrinterOnUsb::Fault;

constexpr std::uint16_t kPacketSize = 512;

TransferEnd success(std::size_t bytes) { return {kIOReturnSuccess, bytes}; }

class UsbTransferContract : public UsbContract {
 protected:
  void plugInWith(Fault fault) { mDevice = plugIn({.fault = fault}); }

  std::unique_ptr<platform::UsbInterfaceObject> makeAcl() {
    return mHost.interfaceObject(mDevice, UsbHost::kPrinterClass);
  }

  void openAcl(Fault fault = Fault::None) {
    plugInWith(fault);
    mAcl = mHost.openInterface(mDevice, UsbHost::kPrinterClass);
  }

  TransferEnd write(const std::string& bytes, std::uint32_t timeout = 5000) {
    return mHost.write(*mAcl, bytes, timeout);
  }

  // What comes in one transfer of a packet at most.
  std::string read() {
    std::string bytes;
    EXPECT_EQ(mHost.read(*mAcl, bytes, kPacketSize).result, kIOReturnSuccess);
    return bytes;
  }

  // The whole answer to a request for the device ID.
  std::string ask() {
    EXPECT_EQ(write(kStatusOff), success(34));
    EXPECT_EQ(write(kIdRequest), success(59));
    const std::string head = read();
    EXPECT_THAT(head, SizeIs(16));
    return head + read();
  }

  // A read that nothing answers; its end, if it has one, is in `recorder`.
  void startSilentRead(TransferRecorder& recorder) {
    mBuffer.assign(kPacketSize, '\0');
    ASSERT_EQ(mHost.startRead(*mAcl, mBuffer, recorder, 0), kIOReturnSuccess);
  }

  io_service_t mDevice = 0;
  std::string mBuffer;
  std::unique_ptr<platform::UsbInterfaceObject> mAcl;
};

// Opening.

TEST_P(UsbTransferContract, NothingWorksUnlessItIsOpen) {
  plugInWith(Fault::None);
  mAcl = makeAcl();
  const auto expectNotOpen = [&] {
    std::uint8_t count = 0;
    platform::UsbPipeProperties properties;
    platform::UsbEventSource* source = nullptr;
    EXPECT_EQ(mAcl->close(), platform::kIOReturnNotOpen);
    EXPECT_EQ(mAcl->getNumEndpoints(count), platform::kIOReturnNotOpen);
    EXPECT_EQ(mAcl->getPipeProperties(1, properties), platform::kIOReturnNotOpen);
    EXPECT_EQ(mAcl->createAsyncEventSource(source), platform::kIOReturnNotOpen);
    EXPECT_EQ(mAcl->clearPipeStallBothEnds(1), platform::kIOReturnNotOpen);
    EXPECT_EQ(write("x").result, platform::kIOReturnNotOpen);
  };
  expectNotOpen();
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(mAcl->open(), kIOReturnSuccess);
    EXPECT_EQ(write("x").result, platform::kIOUSBNoAsyncPortErr);
    mHost.addEventSource(*mAcl);
    EXPECT_EQ(ask(), kIdAnswer);
    EXPECT_EQ(mAcl->close(), kIOReturnSuccess);
    expectNotOpen();
  }
}

TEST_P(UsbTransferContract, AnInterfaceIsOpenedByOneObject) {
  openAcl();
  EXPECT_EQ(mAcl->open(), platform::kIOReturnExclusiveAccess);
  const auto other = makeAcl();
  EXPECT_EQ(other->open(), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(other->close(), platform::kIOReturnNotOpen);
  mAcl.reset();
  EXPECT_EQ(other->open(), kIOReturnSuccess);
}

TEST_P(UsbTransferContract, PipesCountInTheOrderOfTheDescriptors) {
  openAcl(Fault::InPipeFirst);
  std::uint8_t count = 0;
  ASSERT_EQ(mAcl->getNumEndpoints(count), kIOReturnSuccess);
  EXPECT_EQ(count, 2);
  platform::UsbPipeProperties properties;
  ASSERT_EQ(mAcl->getPipeProperties(1, properties), kIOReturnSuccess);
  EXPECT_EQ(properties.direction, UsbDirection::In);
  EXPECT_EQ(properties.transferType, 2);
  EXPECT_EQ(properties.maxPacketSize, kPacketSize);
  ASSERT_EQ(mAcl->getPipeProperties(2, properties), kIOReturnSuccess);
  EXPECT_EQ(properties.direction, UsbDirection::Out);
  EXPECT_EQ(ask(), kIdAnswer);
}

TEST_P(UsbTransferContract, PipesThatCannotDoItRefuse) {
  openAcl();
  platform::UsbPipeProperties properties;
  TransferRecorder recorder;
  char byte = 0;
  const auto readFrom = [&](std::uint8_t pipe) {
    return mAcl->readPipeAsyncTO(pipe, &byte, 1, 100, 100, TransferRecorder::ended, &recorder);
  };
  const auto writeTo = [&](std::uint8_t pipe) {
    return mAcl->writePipeAsyncTO(pipe, &byte, 1, 100, 100, TransferRecorder::ended, &recorder);
  };
  for (const std::uint8_t pipe : std::array<std::uint8_t, 3>{0, 3, 255}) {
    EXPECT_EQ(mAcl->getPipeProperties(pipe, properties), platform::kIOUSBUnknownPipeErr);
    EXPECT_EQ(mAcl->clearPipeStallBothEnds(pipe), platform::kIOUSBUnknownPipeErr);
    EXPECT_EQ(readFrom(pipe), platform::kIOUSBUnknownPipeErr);
    EXPECT_EQ(writeTo(pipe), platform::kIOUSBUnknownPipeErr);
  }
  EXPECT_EQ(readFrom(UsbHost::pipe(*mAcl, UsbDirection::Out)), platform::kIOReturnBadArgument);
  EXPECT_EQ(writeTo(UsbHost::pipe(*mAcl, UsbDirection::In)), platform::kIOReturnBadArgument);
  settle();
  EXPECT_THAT(recorder.ends(), IsEmpty());
}

// Transfers.

TEST_P(UsbTransferContract, BothInterfacesAreUsedTogether) {
  openAcl();
  const auto ews = mHost.openInterface(mDevice, UsbHost::kVendorClass);
  TransferRecorder writing;
  TransferRecorder reading;
  const std::string hello = "hello";
  std::string echo(std::size_t{2} * kPacketSize, '\0');
  ASSERT_EQ(mHost.startRead(*ews, echo, reading), kIOReturnSuccess);
  ASSERT_EQ(mHost.startWrite(*ews, hello, writing), kIOReturnSuccess);
  EXPECT_EQ(ask(), kIdAnswer);
  // A packet that is not full ends a transfer.
  EXPECT_EQ(mHost.await(reading), success(5));
  EXPECT_EQ(echo.substr(0, 6), std::string("hello\0", 6));
  mAcl.reset();
  EXPECT_EQ(mHost.write(*ews, "again"), success(5));
  settle();
  EXPECT_THAT(writing.ends(), ElementsAre(success(5)));
  EXPECT_THAT(reading.ends(), SizeIs(1));
}

TEST_P(UsbTransferContract, EmptyPacketsAreReadsOfNothing) {
  openAcl(Fault::EmptyPackets);
  EXPECT_EQ(write(kStatusOff), success(34));
  EXPECT_EQ(write(kIdRequest), success(59));
  EXPECT_EQ(read(), "");
  EXPECT_EQ(read(), kIdAnswer.substr(0, 16));
  EXPECT_EQ(read(), "");
  EXPECT_EQ(read(), kIdAnswer.substr(16));
}

TEST_P(UsbTransferContract, ASilentPrinterIsATimeOut) {
  openAcl();
  std::string bytes;
  EXPECT_EQ(mHost.read(*mAcl, bytes, kPacketSize, 100),
            (TransferEnd{platform::kIOUSBTransactionTimeout, 0}));
  // And nothing is lost by that.
  EXPECT_EQ(ask(), kIdAnswer);
}

TEST_P(UsbTransferContract, TheShorterOfTwoTimeOutsCounts) {
  constexpr std::uint32_t kLong = 600000;
  openAcl();
  const auto read = [&](std::uint32_t noDataTimeout, std::uint32_t completionTimeout) {
    TransferRecorder recorder;
    mBuffer.assign(kPacketSize, '\0');
    EXPECT_EQ(
        mAcl->readPipeAsyncTO(UsbHost::pipe(*mAcl, UsbDirection::In), mBuffer.data(), kPacketSize,
                              noDataTimeout, completionTimeout, TransferRecorder::ended, &recorder),
        kIOReturnSuccess);
    return mHost.await(recorder);
  };
  const TransferEnd timeOut{platform::kIOUSBTransactionTimeout, 0};
  EXPECT_EQ(read(100, kLong), timeOut);
  EXPECT_EQ(read(kLong, 100), timeOut);
  EXPECT_EQ(read(100, 0), timeOut);
  EXPECT_EQ(read(0, 100), timeOut);
}

TEST_P(UsbTransferContract, APrinterThatDoesNotTakeBytesIsATimeOut) {
  openAcl(Fault::TakesOneMessage);
  EXPECT_EQ(write(kStatusOff), success(34));
  EXPECT_EQ(write(std::string(1 << 20, 'x'), 200).result, platform::kIOUSBTransactionTimeout);
}

TEST_P(UsbTransferContract, AStallLastsUntilItIsCleared) {
  openAcl(Fault::StallsAtRequest);
  const TransferEnd stalled{platform::kIOUSBPipeStalled, 0};
  EXPECT_EQ(write(kStatusOff), success(34));
  TransferRecorder recorder;
  startSilentRead(recorder);
  EXPECT_EQ(write(kIdRequest), success(59));
  EXPECT_EQ(mHost.await(recorder), stalled);
  std::string bytes;
  EXPECT_EQ(mHost.read(*mAcl, bytes, kPacketSize), stalled);
  EXPECT_EQ(write("x"), stalled);
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(UsbHost::pipe(*mAcl, UsbDirection::In)), kIOReturnSuccess);
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(UsbHost::pipe(*mAcl, UsbDirection::Out)),
            kIOReturnSuccess);
  EXPECT_EQ(read(), kIdAnswer.substr(0, 16));
}

TEST_P(UsbTransferContract, ClearingAPipeThatIsNotStalledLosesNothing) {
  openAcl();
  const auto clear = [&](UsbDirection direction) {
    EXPECT_EQ(mAcl->clearPipeStallBothEnds(UsbHost::pipe(*mAcl, direction)), kIOReturnSuccess);
  };
  for (const std::string& message : {kStatusOff, kIdRequest}) {
    clear(UsbDirection::Out);
    EXPECT_EQ(write(message), success(message.size()));
  }
  clear(UsbDirection::In);
  const std::string head = read();
  clear(UsbDirection::In);
  EXPECT_EQ(head + read(), kIdAnswer);
}

// The end of an interface, or of its device.

TEST_P(UsbTransferContract, UnpluggingEndsTheTransferAndEverythingAfterIt) {
  openAcl();
  TransferRecorder recorder;
  startSilentRead(recorder);
  mWorld->unplug("VP000001");
  EXPECT_THAT(
      mHost.await(recorder),
      Field(&TransferEnd::result, AnyOf(platform::kIOReturnIOError, platform::kIOReturnNoDevice)));
  ASSERT_TRUE(mHost.awaitGone());
  EXPECT_EQ(write("x"), (TransferEnd{platform::kIOReturnNoDevice, 0}));
  EXPECT_EQ(mAcl->clearPipeStallBothEnds(1), platform::kIOReturnNoDevice);
  EXPECT_EQ(mAcl->close(), kIOReturnSuccess);
  EXPECT_EQ(mAcl->open(), platform::kIOReturnNoDevice);
  EXPECT_THAT(recorder.ends(), SizeIs(1));
}

TEST_P(UsbTransferContract, WhatWasOpenEndsWhenTheDeviceStartsOver) {
  openAcl();
  TransferRecorder recorder;
  startSilentRead(recorder);
  const auto device = mHost.deviceObject(mDevice);
  ASSERT_EQ(device->open(), kIOReturnSuccess);
  ASSERT_EQ(device->reEnumerate(), kIOReturnSuccess);
  device->close();
  EXPECT_THAT(
      mHost.await(recorder),
      Field(&TransferEnd::result, AnyOf(platform::kIOReturnAborted, platform::kIOReturnNoDevice)));
  const io_service_t old = mDevice;
  ASSERT_TRUE(mWorld->runUntil([&] {
    mDevice = mHost.awaitPrinter();
    return mDevice != old;
  }));

  // The old one is in nobody's way.
  const auto left = std::move(mAcl);
  mAcl = mHost.openInterface(mDevice, UsbHost::kPrinterClass);
  EXPECT_EQ(ask(), kIdAnswer);
  EXPECT_EQ(mHost.write(*left, "x"), (TransferEnd{platform::kIOReturnNoDevice, 0}));
  EXPECT_EQ(left->close(), kIOReturnSuccess);
  EXPECT_THAT(recorder.ends(), SizeIs(1));
}

TEST_P(UsbTransferContract, ClosingTakesBackTheTransfersWithoutAWord) {
  openAcl();
  TransferRecorder recorder;
  startSilentRead(recorder);
  EXPECT_EQ(mAcl->close(), kIOReturnSuccess);
  mBuffer = std::string();
  settle();
  EXPECT_THAT(recorder.ends(), IsEmpty());
}

TEST_P(UsbTransferContract, ACompletionOnItsWayIsDroppedByTheEndOfTheObject) {
  openAcl();
  TransferRecorder recorder;
  ASSERT_EQ(mHost.startWrite(*mAcl, kStatusOff, recorder), kIOReturnSuccess);
  mWorld->awaitMessages("VP000001", 1);
  mAcl.reset();
  settle();
  EXPECT_THAT(recorder.ends(), IsEmpty());
}

TEST_P(UsbTransferContract, ObjectsMayEndInACompletion) {
  openAcl();
  struct Owner {
    std::array<std::unique_ptr<platform::UsbInterfaceObject>, 2> interfaces;
    int calls = 0;
  } owner{{std::move(mAcl), mHost.openInterface(mDevice, UsbHost::kVendorClass)}};
  for (const auto& interface : owner.interfaces) {
    ASSERT_EQ(interface->writePipeAsyncTO(
                  UsbHost::pipe(*interface, UsbDirection::Out), kStatusOff.data(), 34, 0, 0,
                  [](void* refCon, IOReturn, void*) {
                    auto* const self = static_cast<Owner*>(refCon);
                    for (auto& each : self->interfaces) each.reset();
                    ++self->calls;
                  },
                  &owner),
              kIOReturnSuccess);
  }
  // Both have ended, or nearly, when the first is told, and with the objects it is the last.
  mWorld->awaitMessages("VP000001", 1);
  EXPECT_TRUE(mWorld->runUntil([&] { return owner.calls > 0; }));
  settle();
  EXPECT_EQ(owner.calls, 1);
}

TEST_P(UsbTransferContract, CompletionsWaitForARunLoop) {
  plugInWith(Fault::None);
  mAcl = makeAcl();
  ASSERT_EQ(mAcl->open(), kIOReturnSuccess);
  platform::UsbEventSource* source = nullptr;
  ASSERT_EQ(mAcl->createAsyncEventSource(source), kIOReturnSuccess);
  TransferRecorder recorder;
  ASSERT_EQ(mHost.startWrite(*mAcl, kStatusOff, recorder), kIOReturnSuccess);
  mWorld->awaitMessages("VP000001", 1);
  settle();
  EXPECT_THAT(recorder.ends(), IsEmpty());
  source->addTo(mWorld->runLoop());
  EXPECT_EQ(mHost.await(recorder), success(34));
}

INSTANTIATE_TEST_SUITE_P(Usb, UsbTransferContract, testing::ValuesIn(usbImplementations()),
                         implementationName);

}  // namespace
