#include "platform/libusb/LibusbResults.h"

#include <array>
#include <cerrno>

namespace platform {
namespace {

struct CallResult {
  int libusb;
  IOReturn result;
};

// usbfs tells of an interface that another program has claimed as busy, and of a transfer that is
// larger than it takes (16 MiB, unless the administrator changed that) as out of memory.
constexpr std::array kCallResults{
    CallResult{LIBUSB_SUCCESS, kIOReturnSuccess},
    CallResult{LIBUSB_ERROR_IO, kIOReturnIOError},
    CallResult{LIBUSB_ERROR_INVALID_PARAM, kIOReturnBadArgument},
    CallResult{LIBUSB_ERROR_ACCESS, kIOReturnNotPermitted},
    CallResult{LIBUSB_ERROR_NO_DEVICE, kIOReturnNoDevice},
    CallResult{LIBUSB_ERROR_NOT_FOUND, kIOReturnNotFound},
    CallResult{LIBUSB_ERROR_BUSY, kIOReturnExclusiveAccess},
    CallResult{LIBUSB_ERROR_TIMEOUT, kIOReturnTimeout},
    CallResult{LIBUSB_ERROR_OVERFLOW, kIOReturnOverrun},
    CallResult{LIBUSB_ERROR_PIPE, kIOUSBPipeStalled},
    CallResult{LIBUSB_ERROR_INTERRUPTED, kIOReturnAborted},
    CallResult{LIBUSB_ERROR_NO_MEM, kIOReturnNoMemory},
    CallResult{LIBUSB_ERROR_NOT_SUPPORTED, kIOReturnUnsupported},
};

struct ErrnoResult {
  int error;
  IOReturn result;
};

constexpr std::array kErrnoResults{
    ErrnoResult{EACCES, kIOReturnNotPermitted}, ErrnoResult{EPERM, kIOReturnNotPermitted},
    ErrnoResult{ENOENT, kIOReturnNoDevice},     ErrnoResult{ENODEV, kIOReturnNoDevice},
    ErrnoResult{ENXIO, kIOReturnNoDevice},      ErrnoResult{ENOMEM, kIOReturnNoMemory},
    ErrnoResult{EMFILE, kIOReturnNoResources},  ErrnoResult{ENFILE, kIOReturnNoResources},
};

struct TransferResult {
  libusb_transfer_status libusb;
  IOReturn result;
};

constexpr std::array kTransferResults{
    TransferResult{LIBUSB_TRANSFER_COMPLETED, kIOReturnSuccess},
    TransferResult{LIBUSB_TRANSFER_ERROR, kIOReturnIOError},
    TransferResult{LIBUSB_TRANSFER_TIMED_OUT, kIOUSBTransactionTimeout},
    TransferResult{LIBUSB_TRANSFER_CANCELLED, kIOReturnAborted},
    TransferResult{LIBUSB_TRANSFER_STALL, kIOUSBPipeStalled},
    TransferResult{LIBUSB_TRANSFER_NO_DEVICE, kIOReturnNoDevice},
    TransferResult{LIBUSB_TRANSFER_OVERFLOW, kIOReturnOverrun},
};

}  // namespace

IOReturn resultOfCall(int libusbResult) {
  for (const CallResult& row : kCallResults) {
    if (row.libusb == libusbResult) return row.result;
  }
  return kIOReturnError;
}

// libusb has no name for a request that failed on the bus, as it does while the plug is pulled.
IOReturn resultOfClearHalt(int libusbResult) {
  return libusbResult == LIBUSB_ERROR_OTHER ? kIOReturnIOError : resultOfCall(libusbResult);
}

IOReturn resultOfErrno(int error) {
  for (const ErrnoResult& row : kErrnoResults) {
    if (row.error == error) return row.result;
  }
  return kIOReturnError;
}

IOReturn resultOfTransfer(const libusb_transfer& transfer) {
  if (transfer.status == LIBUSB_TRANSFER_TIMED_OUT && transfer.actual_length == transfer.length) {
    return kIOReturnSuccess;
  }
  for (const TransferResult& row : kTransferResults) {
    if (row.libusb == transfer.status) return row.result;
  }
  return kIOReturnError;
}

}  // namespace platform
