// The host's registry of USB devices and its objects for talking to them.
//
// Three things apart: registry entries (what is attached, with names and properties; reference
// counted, readable without any right on the device), the device object and the interface object
// (I/O handles). Completions and notifications come from the run loop, never from inside a call.
//
// An entry stands for one attachment: a device that is unplugged and plugged in again is a new
// entry, and so is one that starts over or is configured anew. An entry whose device is gone stays
// usable while it is referenced: its properties can be read; plug-ins, I/O objects, iterators over
// its interfaces and notifications can be made for it (and its end is then notified); only what
// needs the device itself fails, with kIOReturnNoDevice. Its number is not used again before its
// last reference is released.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/PropertyList.h"
#include "platform/RunLoop.h"

namespace platform {

// Result codes: 0, or a code with the top bits set that the log prints in hexadecimal. Signed, so
// that a failed query is a negative result.
using IOReturn = std::int32_t;

constexpr IOReturn ioReturn(std::uint32_t code) { return static_cast<IOReturn>(code); }

inline constexpr IOReturn kIOReturnSuccess = 0;
inline constexpr IOReturn kIOReturnError = ioReturn(0xe00002bc);
inline constexpr IOReturn kIOReturnNoMemory = ioReturn(0xe00002bd);
inline constexpr IOReturn kIOReturnNoResources = ioReturn(0xe00002be);
inline constexpr IOReturn kIOReturnNoDevice = ioReturn(0xe00002c0);
inline constexpr IOReturn kIOReturnNotPrivileged = ioReturn(0xe00002c1);
inline constexpr IOReturn kIOReturnBadArgument = ioReturn(0xe00002c2);
inline constexpr IOReturn kIOReturnExclusiveAccess = ioReturn(0xe00002c5);
inline constexpr IOReturn kIOReturnUnsupported = ioReturn(0xe00002c7);
inline constexpr IOReturn kIOReturnIOError = ioReturn(0xe00002ca);
inline constexpr IOReturn kIOReturnNotOpen = ioReturn(0xe00002cd);
inline constexpr IOReturn kIOReturnBusy = ioReturn(0xe00002d5);
inline constexpr IOReturn kIOReturnTimeout = ioReturn(0xe00002d6);
inline constexpr IOReturn kIOReturnNotPermitted = ioReturn(0xe00002e2);
inline constexpr IOReturn kIOReturnUnderrun = ioReturn(0xe00002e7);
inline constexpr IOReturn kIOReturnOverrun = ioReturn(0xe00002e8);
inline constexpr IOReturn kIOReturnAborted = ioReturn(0xe00002eb);
inline constexpr IOReturn kIOReturnNotResponding = ioReturn(0xe00002ed);
inline constexpr IOReturn kIOReturnNotFound = ioReturn(0xe00002f0);
inline constexpr IOReturn kIOUSBPipeStalled = ioReturn(0xe000404f);
inline constexpr IOReturn kIOUSBTransactionTimeout = ioReturn(0xe0004051);
inline constexpr IOReturn kIOUSBNoAsyncPortErr = ioReturn(0xe000405f);
inline constexpr IOReturn kIOUSBUnknownPipeErr = ioReturn(0xe0004061);

// Registry entries, iterators over them and notification objects: one counted reference each.
// 0 is none.
using io_object_t = std::uint32_t;
using io_service_t = io_object_t;
using io_registry_entry_t = io_object_t;
using io_iterator_t = io_object_t;

// What a wanted device looks like: the class "IOUSBDevice" and number properties. A number of two
// bytes matches by its 16 bits, whatever their sign.
struct MatchingDictionary {
  Text className;
  PropertyDictionary properties;
};

inline constexpr std::uint16_t kIOUSBFindInterfaceDontCare = 0xFFFF;

struct IOUSBFindInterfaceRequest {
  std::uint16_t bInterfaceClass = kIOUSBFindInterfaceDontCare;
  std::uint16_t bInterfaceSubClass = kIOUSBFindInterfaceDontCare;
  std::uint16_t bInterfaceProtocol = kIOUSBFindInterfaceDontCare;
  std::uint16_t bAlternateSetting = kIOUSBFindInterfaceDontCare;
};

enum class UsbDirection : std::uint8_t { Out, In, Any };

struct UsbPipeProperties {
  UsbDirection direction = UsbDirection::Out;
  std::uint8_t number = 0;
  std::uint8_t transferType = 0;
  std::uint16_t maxPacketSize = 0;  // bytes
  std::uint8_t interval = 0;
};

// The end of one transfer: its result and, in `arg0`, the number of bytes transferred.
using IOAsyncCallback = void (*)(void* refCon, IOReturn result, void* arg0);

// Delivers an interface's completions once it is on a run loop. Owned by the interface object.
class UsbEventSource {
 public:
  virtual ~UsbEventSource() = default;
  virtual void addTo(RunLoop& runLoop) = 0;
};

// Destroying an object releases it: transfers in flight are cancelled and reaped first, and their
// callbacks are not called. An interface that is open already, by whatever object or program, gives
// kIOReturnExclusiveAccess; everything but open() on one that is not gives kIOReturnNotOpen. `pipe`
// counts from 1 in descriptor order, whatever the endpoint address; an operation on a pipe that the
// interface does not have gives kIOUSBUnknownPipeErr, a transfer against its direction
// kIOReturnBadArgument. A pipe that has stalled ends its transfers with kIOUSBPipeStalled until it
// is cleared. Between two downloads others may have an interface that is open: what uses a pipe
// next takes it again, and gives kIOReturnExclusiveAccess where somebody has it.
class UsbInterfaceObject {
 public:
  virtual ~UsbInterfaceObject() = default;

  virtual IOReturn open() = 0;
  virtual IOReturn close() = 0;
  virtual IOReturn getNumEndpoints(std::uint8_t& count) = 0;
  virtual IOReturn getPipeProperties(std::uint8_t pipe, UsbPipeProperties& properties) = 0;
  virtual IOReturn createAsyncEventSource(UsbEventSource*& source) = 0;
  virtual IOReturn clearPipeStallBothEnds(std::uint8_t pipe) = 0;

  // One transfer each; kIOUSBNoAsyncPortErr before there is an event source. The callback comes
  // exactly once, unless close() or destruction comes first; `buffer` must stay valid until then,
  // and never gets more than `size` bytes. Time-outs in milliseconds, 0 for none.
  virtual IOReturn readPipeAsyncTO(std::uint8_t pipe, void* buffer, std::uint32_t size,
                                   std::uint32_t noDataTimeout, std::uint32_t completionTimeout,
                                   IOAsyncCallback callback, void* refCon) = 0;
  virtual IOReturn writePipeAsyncTO(std::uint8_t pipe, const void* buffer, std::uint32_t size,
                                    std::uint32_t noDataTimeout, std::uint32_t completionTimeout,
                                    IOAsyncCallback callback, void* refCon) = 0;
};

// A device that is open already, by whatever object, or of which another program has an interface,
// gives kIOReturnExclusiveAccess. What this program has of its interfaces is no obstacle; it ends
// with the entry when the device starts over.
class UsbDeviceObject {
 public:
  virtual ~UsbDeviceObject() = default;

  virtual IOReturn open() = 0;
  virtual IOReturn close() = 0;
  virtual IOReturn reEnumerate() = 0;

  // The interfaces of the current configuration that match, in descriptor order.
  virtual IOReturn createInterfaceIterator(const IOUSBFindInterfaceRequest& request,
                                           io_iterator_t& iterator) = 0;
};

// The way from a registry entry to its I/O object. A query has a negative result on failure.
class UsbPlugIn {
 public:
  virtual ~UsbPlugIn() = default;
  virtual IOReturn queryDevice(std::unique_ptr<UsbDeviceObject>& device) = 0;
  virtual IOReturn queryInterface(std::unique_ptr<UsbInterfaceObject>& interface) = 0;
};

// Brings notifications to a run loop; destroying it ends them. The notification objects stay their
// holders', to be released before or after the port.
class UsbNotificationPort {
 public:
  virtual ~UsbNotificationPort() = default;
  virtual void addTo(RunLoop& runLoop) = 0;
};

// Called when a matching service has come; the iterator gives the new ones, and reading it to its
// end arms the next call.
using IOServiceMatchingCallback = void (*)(void* refCon, io_iterator_t iterator);

using IOServiceInterestCallback = void (*)(void* refCon, io_service_t service,
                                           std::uint32_t messageType, void* messageArgument);

inline constexpr std::uint32_t kIOMessageServiceIsTerminated = 0xE0000010;

class UsbRegistry {
 public:
  enum class ClientType { Device, Interface };

  virtual ~UsbRegistry() = default;

  virtual void retain(io_object_t object) = 0;
  virtual void release(io_object_t object) = 0;
  virtual io_object_t iteratorNext(io_iterator_t iterator) = 0;  // a reference, or 0

  // At most 127 bytes.
  virtual IOReturn entryName(io_registry_entry_t entry, std::string& name) = 0;
  virtual std::optional<PropertyValue> property(io_registry_entry_t entry, const char* key) = 0;
  virtual IOReturn properties(io_registry_entry_t entry, PropertyDictionary& dictionary) = 0;

  // None for a class that the registry does not know.
  virtual std::optional<MatchingDictionary> serviceMatching(const char* className) = 0;
  virtual IOReturn matchingServices(const MatchingDictionary& matching,
                                    io_iterator_t& iterator) = 0;

  // Never null. On a host without USB its notifications simply never come; on one that has USB and
  // cannot tell of arrivals, addMatchingNotification() fails.
  virtual std::unique_ptr<UsbNotificationPort> createNotificationPort() = 0;
  virtual IOReturn addMatchingNotification(UsbNotificationPort& port, const char* type,
                                           const MatchingDictionary& matching,
                                           IOServiceMatchingCallback callback, void* refCon,
                                           io_iterator_t& iterator) = 0;
  virtual IOReturn addInterestNotification(UsbNotificationPort& port, io_service_t service,
                                           const char* type, IOServiceInterestCallback callback,
                                           void* refCon, io_object_t& notification) = 0;

  virtual IOReturn createPlugIn(io_service_t service, ClientType type,
                                std::unique_ptr<UsbPlugIn>& plugIn) = 0;
};

}  // namespace platform
