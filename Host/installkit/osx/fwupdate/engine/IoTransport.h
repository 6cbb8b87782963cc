// The byte stream to a printer, as the tasks of a download see it: four operations, each of which
// starts its work and returns. Implementations carry it over TCP and USB; a download's task set
// owns its transport.
//
// Every operation that returns without throwing is followed by exactly one of:
//   - a resume of the FirmwareDownloader, later, from the run loop or by an event it posts to
//     itself, when the operation is complete;
//   - FirmwareDownloader::notifyAsyncFailure(), when it failed.
// Neither comes from inside the operation, and none after the transport's destruction. A buffer
// belongs to the caller and must stay valid until then.
#pragma once

#include <cstddef>
#include <functional>

class IoTransport {
 public:
  // Told how many bytes of a write have been taken so far: from inside the write, or later until it
  // is complete, as often as the transport learns of it. May be empty.
  using Progress = std::function<void(std::size_t taken)>;

  virtual ~IoTransport() = default;

  virtual void connect() = 0;

  // Reads exactly `length` bytes, within the transport's own time.
  virtual void read(void* buffer, std::size_t length) = 0;

  // The same, within `timeout` milliseconds where the transport can keep to that.
  virtual void read(void* buffer, std::size_t length, unsigned int timeout) = 0;

  // Writes exactly `length` bytes.
  virtual void write(const void* buffer, std::size_t length) = 0;

  // The same, and tells `progress`, at the latest that all are taken when the write is complete.
  virtual void write(const void* buffer, std::size_t length, const Progress& progress) = 0;

  // What every read and write asks for before it starts: throws std::runtime_error when there is
  // nothing to transfer or nowhere to transfer it.
  static void validate(const void* buffer, std::size_t length);
};
