// One interface of a USB device: an OUT pipe to write to and an IN pipe to read from, both
// asynchronously. It is opened by the first request; that request's thread gets all completions,
// from its run loop. Reads are of exact length, however many transfers they take. The interface
// owns the state of its requests: one that is still under way when the interface is destroyed is
// dropped, and its notifier is told nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "platform/UsbRegistry.h"

class AsyncIoNotifier;
class ShortReadBuffer;

class UsbInterface {
 public:
  // Keeps a reference to the registry entry `service`. Throws IoKitException.
  explicit UsbInterface(platform::io_service_t service);
  ~UsbInterface();
  UsbInterface(const UsbInterface&) = delete;
  UsbInterface& operator=(const UsbInterface&) = delete;

  // Reads exactly `len` bytes. `buf` and `notifier` must stay valid until the notifier is told,
  // which can be within this call when all bytes are there from an earlier packet. The time-out, in
  // milliseconds, is that of each transfer. One read at a time. A request that cannot be started
  // throws IoKitException, and the notifier is told nothing; a part of it that later cannot be
  // started is told as failed. An interface without an IN pipe, or with one of packet size 0,
  // cannot be read: kIOReturnNotFound.
  void read(void* buf, std::size_t len, AsyncIoNotifier& notifier, unsigned int timeoutMs);

  // Writes `len` bytes in one transfer. Told complete when the transfer ends, even if the device
  // took fewer bytes. Otherwise like read().
  void write(const void* buf, std::size_t len, AsyncIoNotifier& notifier, unsigned int timeoutMs);

  // Writes the registry's properties of the interface.
  void print(std::ostream& os) const;

  // `len` rounded down to whole packets; 0 while the packet size is not known, or is 0.
  std::size_t bulkReadLen(std::size_t len) const;

 private:
  struct ReadContext {
    UsbInterface* owner;
    AsyncIoNotifier* notifier;
    char* buffer;        // where the next bytes go
    std::uint32_t mLen;  // bytes still wanted
    std::uint32_t timeout;
    bool isShortRead;  // the transfer under way goes through the short read buffer
  };

  struct WriteContext {
    UsbInterface* owner;
    AsyncIoNotifier* notifier;
  };

  void initEndpointPipes();
  void findPipes();
  void clearPipeStall(int pipe);

  // True when all bytes are there, and the notifier is to be told; otherwise the next part is under
  // way.
  bool read(ReadContext& context);
  bool handleReadCompletion(ReadContext& context, std::size_t numBytes);
  bool handleShortReadCompletion(ReadContext& context, std::size_t numBytes);
  void issueRead(ReadContext& context);
  void handleWriteCompletion(WriteContext& context);

  static void readCompletionCallback(void* refCon, int result, void* arg0);
  static void writeCompletionCallback(void* refCon, int result, void* arg0);

  platform::io_service_t mService;
  std::unique_ptr<platform::UsbInterfaceObject> mInterface;
  bool mIsOpen = false;  // opened once; says nothing about the pipes having been found
  std::string mName;
  std::int32_t mOutPipe = -1;  // -1: none
  std::int32_t mInPipe = -1;
  std::uint32_t mMaxPacketSize = 0;  // of the IN pipe
  std::unique_ptr<ShortReadBuffer> mShortReadBuffer;
  std::vector<std::unique_ptr<ReadContext>> mReads;
  std::vector<std::unique_ptr<WriteContext>> mWrites;
};
