// TCP connections, and socket addresses as byte records.
//
// The record, whatever the host's own sockaddr looks like:
//   byte 0 length, byte 1 family (2 = IPv4, 30 = IPv6), bytes 2-3 port (big-endian), then
//   IPv4: bytes 4-7 address, bytes 8-15 zero          (16 bytes)
//   IPv6: bytes 4-7 flow, bytes 8-23 address, bytes 24-27 scope in host order   (28 bytes)
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/Data.h"
#include "platform/Text.h"

namespace platform {

inline constexpr int kAddressFamilyIPv4 = 2;
inline constexpr int kAddressFamilyIPv6 = 30;

class StreamSocket {
 public:
  enum CallbackType : unsigned long {
    kDataCallback = 3,     // `data` is a const Data*: the bytes; length 0, once, at the end
    kConnectCallback = 4,  // `data` is null, or a const int*: the error of a failed connect
    kWriteCallback = 8,    // `data` is null
  };

  // Called from the run loop, one type at a time.
  using Callout = void (*)(StreamSocket* socket, unsigned long type, const Data& address,
                           const void* data, void* info);

  // Told from inside send(), each time that the host has taken some of its bytes: how many they
  // are by then. Leaves the socket alone. May be empty.
  using Progress = std::function<void(std::size_t taken)>;

  // Closes the connection; nothing is called back afterwards.
  virtual ~StreamSocket() = default;

  // Starts a connection and returns at once: 0, or an error when it cannot even be started (a null
  // or foreign address, no socket). The end is told once by kConnectCallback, failed or not.
  virtual int connectInBackground(const Data& address) = 0;

  // kWriteCallback fires once per enabling, when the connection takes bytes.
  virtual void enableCallbacks(unsigned long types) = 0;

  // Blocks until all bytes are handed to the host: 0, or an error, also when `timeoutSeconds` pass
  // before that. The bytes are not copied. A send that runs out of time ends the connection: none
  // of the rest is sent later, and nothing is called back. The run loop waits for room meanwhile,
  // and calls nothing.
  virtual int send(std::span<const std::uint8_t> bytes, double timeoutSeconds,
                   const Progress& progress) = 0;
};

class Network {
 public:
  virtual ~Network() = default;

  // A socket of TCP over IPv4. Never null: one that could not be made fails in
  // connectInBackground() and send(). `callbackTypes` is a sum of callback types, all enabled from
  // the start.
  virtual std::unique_ptr<StreamSocket> createStreamSocket(unsigned long callbackTypes,
                                                           StreamSocket::Callout callout,
                                                           void* info) = 0;

  // Dotted or colon form of a bare address (4 or 16 bytes); null when the family is neither, or the
  // bytes are too few.
  virtual Text numericAddress(int family, std::span<const std::uint8_t> address) = 0;
};

}  // namespace platform
