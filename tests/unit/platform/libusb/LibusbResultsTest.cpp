#include <gtest/gtest.h>

#include <cerrno>

#include "platform/libusb/LibusbResults.h"

namespace {

using platform::IOReturn;
using platform::resultOfCall;
using platform::resultOfClearHalt;
using platform::resultOfErrno;
using platform::resultOfTransfer;

IOReturn resultOf(libusb_transfer_status status, int transferred = 0) {
  libusb_transfer transfer{};
  transfer.status = status;
  transfer.length = 512;
  transfer.actual_length = transferred;
  return resultOfTransfer(transfer);
}

TEST(LibusbResultsTest, ACallFailsWithTheCodeThatNamesTheCause) {
  EXPECT_EQ(resultOfCall(LIBUSB_SUCCESS), platform::kIOReturnSuccess);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_IO), platform::kIOReturnIOError);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_INVALID_PARAM), platform::kIOReturnBadArgument);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_ACCESS), platform::kIOReturnNotPermitted);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_NO_DEVICE), platform::kIOReturnNoDevice);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_NOT_FOUND), platform::kIOReturnNotFound);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_BUSY), platform::kIOReturnExclusiveAccess);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_TIMEOUT), platform::kIOReturnTimeout);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_OVERFLOW), platform::kIOReturnOverrun);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_PIPE), platform::kIOUSBPipeStalled);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_INTERRUPTED), platform::kIOReturnAborted);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_NO_MEM), platform::kIOReturnNoMemory);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_NOT_SUPPORTED), platform::kIOReturnUnsupported);
  EXPECT_EQ(resultOfCall(LIBUSB_ERROR_OTHER), platform::kIOReturnError);
  EXPECT_EQ(resultOfCall(-4711), platform::kIOReturnError);
}

TEST(LibusbResultsTest, AStallThatCannotBeClearedFailsWithTheCodeThatNamesTheCause) {
  EXPECT_EQ(resultOfClearHalt(LIBUSB_SUCCESS), platform::kIOReturnSuccess);
  EXPECT_EQ(resultOfClearHalt(LIBUSB_ERROR_OTHER), platform::kIOReturnIOError);
  EXPECT_EQ(resultOfClearHalt(LIBUSB_ERROR_NOT_FOUND), platform::kIOReturnNotFound);
  EXPECT_EQ(resultOfClearHalt(LIBUSB_ERROR_NO_DEVICE), platform::kIOReturnNoDevice);
}

TEST(LibusbResultsTest, ANodeThatCannotBeOpenedFailsWithTheCodeThatNamesTheCause) {
  EXPECT_EQ(resultOfErrno(EACCES), platform::kIOReturnNotPermitted);
  EXPECT_EQ(resultOfErrno(EPERM), platform::kIOReturnNotPermitted);
  EXPECT_EQ(resultOfErrno(ENOENT), platform::kIOReturnNoDevice);
  EXPECT_EQ(resultOfErrno(ENODEV), platform::kIOReturnNoDevice);
  EXPECT_EQ(resultOfErrno(ENXIO), platform::kIOReturnNoDevice);
  EXPECT_EQ(resultOfErrno(ENOMEM), platform::kIOReturnNoMemory);
  EXPECT_EQ(resultOfErrno(EMFILE), platform::kIOReturnNoResources);
  EXPECT_EQ(resultOfErrno(ENFILE), platform::kIOReturnNoResources);
  EXPECT_EQ(resultOfErrno(EIO), platform::kIOReturnError);
}

TEST(LibusbResultsTest, ATransferFailsWithTheCodeThatNamesTheCause) {
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_COMPLETED), platform::kIOReturnSuccess);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_ERROR), platform::kIOReturnIOError);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_TIMED_OUT), platform::kIOUSBTransactionTimeout);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_CANCELLED), platform::kIOReturnAborted);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_STALL), platform::kIOUSBPipeStalled);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_NO_DEVICE), platform::kIOReturnNoDevice);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_OVERFLOW), platform::kIOReturnOverrun);
  EXPECT_EQ(resultOf(static_cast<libusb_transfer_status>(7)), platform::kIOReturnError);
}

TEST(LibusbResultsTest, ATransferThatIsWholeWhenItsTimeEndsIsNoTimeOut) {
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_TIMED_OUT, 512), platform::kIOReturnSuccess);
  EXPECT_EQ(resultOf(LIBUSB_TRANSFER_TIMED_OUT, 511), platform::kIOUSBTransactionTimeout);
}

}  // namespace
