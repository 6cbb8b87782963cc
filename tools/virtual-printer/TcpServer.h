// The printer's raw print-data port. Serves one connection at a time, as the printer does: further
// hosts are connected by the kernel and wait until the one before them is gone.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Attachment.h"
#include "EventLoop.h"
#include "FileDescriptor.h"
#include "Printer.h"
#include "TcpConnection.h"

namespace virtualprinter {

class TcpServer : public Attachment {
 public:
  // `address` is an IPv4 address in dotted form; port 0 takes a free one and keeps it through
  // restarts. Throws std::runtime_error when the port cannot be had.
  TcpServer(Printer& printer, EventLoop& loop, const std::string& address, std::uint16_t port);
  ~TcpServer() override;

  std::uint16_t port() const { return mPort; }

  void arrive() override;
  void leave() override;

 private:
  FileDescriptor bind(std::uint16_t port) const;
  void acceptOne();
  void acceptNext();

  Printer& mPrinter;
  EventLoop& mLoop;
  std::string mAddress;
  FileDescriptor mReservation;  // bound, never listening: nobody else gets the port meanwhile
  std::uint16_t mPort = 0;
  FileDescriptor mListener;
  std::unique_ptr<EventLoop::Watch> mWatch;
  std::unique_ptr<TcpConnection> mConnection;
};

}  // namespace virtualprinter
