#include "PosixPrinter.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>

using platform::FileDescriptor;

PosixPrinter::PosixPrinter(bool listening)
    : mListener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  EXPECT_EQ(::bind(mListener.get(), generic, size), 0);
  EXPECT_EQ(::getsockname(mListener.get(), generic, &size), 0);
  if (listening) {
    EXPECT_EQ(::listen(mListener.get(), 1), 0);
  }
  mPort = ntohs(address.sin_port);
}

platform::Data PosixPrinter::address() const {
  const auto high = static_cast<std::uint8_t>(mPort >> 8);
  const auto low = static_cast<std::uint8_t>(mPort & 0xFF);
  return platform::makeData({16, 2, high, low, 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
}

void PosixPrinter::useSmallBuffers() {
  const int size = 4096;
  ::setsockopt(mListener.get(), SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
}

void PosixPrinter::accept() {
  mConnection = FileDescriptor(::accept4(mListener.get(), nullptr, nullptr, SOCK_CLOEXEC));
  EXPECT_TRUE(mConnection);
}

void PosixPrinter::sends(const std::vector<std::uint8_t>& bytes) {
  const ssize_t sent = ::send(mConnection.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  EXPECT_EQ(sent, static_cast<ssize_t>(bytes.size()));
}

void PosixPrinter::closesItsEnd() { EXPECT_EQ(::shutdown(mConnection.get(), SHUT_WR), 0); }

void PosixPrinter::closes() { FileDescriptor(std::move(mConnection)); }

void PosixPrinter::resets() {
  const linger discard{1, 0};
  ::setsockopt(mConnection.get(), SOL_SOCKET, SO_LINGER, &discard, sizeof discard);
  closes();
}

std::vector<std::uint8_t> PosixPrinter::receives(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  const ssize_t count = ::recv(mConnection.get(), bytes.data(), size, MSG_WAITALL);
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  return bytes;
}

ssize_t PosixPrinter::readsOnce(std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  return ::recv(mConnection.get(), bytes.data(), size, 0);
}
