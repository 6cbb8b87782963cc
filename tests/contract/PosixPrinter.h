// A printer's side of a TCP connection on loopback, with blocking calls of its own. Its port is
// chosen by the host.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Data.h"
#include "platform/posix/FileDescriptor.h"

class PosixPrinter {
 public:
  explicit PosixPrinter(bool listening = true);

  // The record of its address, as discovery delivers it.
  platform::Data address() const;

  // Keeps what the connection can hold unread small; before connecting.
  void useSmallBuffers();

  // Takes the connection that the program has made.
  void accept();

  void sends(const std::vector<std::uint8_t>& bytes);
  void closesItsEnd();  // and goes on reading
  void closes();
  void resets();

  // Reads until there are `size` bytes; fewer when the connection ends before.
  std::vector<std::uint8_t> receives(std::size_t size);

  // Reads up to `size` bytes once: their number, 0 at the end of the stream, or -1 with errno set.
  ssize_t readsOnce(std::size_t size);

  std::uint16_t port() const { return mPort; }

 private:
  platform::FileDescriptor mListener;
  platform::FileDescriptor mConnection;
  std::uint16_t mPort = 0;
};
