#include "TcpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <stdexcept>

#include "fail.h"

namespace virtualprinter {
namespace {

constexpr int kBacklog = 16;
constexpr int kSlowReceiveBuffer = 4096;

// To be set before the connection stands, or the window is already announced.
void limitReceiveBuffer(int socket, const FaultPlan& faults) {
  int size = 0;
  if (faults.find(FaultKind::Slow)) size = kSlowReceiveBuffer;
  if (const Fault* given = faults.find(FaultKind::ReceiveBuffer)) {
    size = static_cast<int>(given->number);
  }
  if (size > 0) setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
}

std::string peerName(const sockaddr_in& address) {
  char text[INET_ADDRSTRLEN];
  inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
  return std::string(text) + ":" + std::to_string(ntohs(address.sin_port));
}

}  // namespace

TcpServer::TcpServer(Printer& printer, EventLoop& loop, const std::string& address,
                     std::uint16_t port)
    : mPrinter(printer), mLoop(loop), mAddress(address), mReservation(bind(port)) {
  sockaddr_in bound{};
  socklen_t size = sizeof bound;
  if (getsockname(mReservation.get(), reinterpret_cast<sockaddr*>(&bound), &size) != 0) {
    fail("getsockname");
  }
  mPort = ntohs(bound.sin_port);
}

TcpServer::~TcpServer() = default;

FileDescriptor TcpServer::bind(std::uint16_t port) const {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  if (inet_pton(AF_INET, mAddress.c_str(), &address.sin_addr) != 1) {
    throw std::runtime_error("\"" + mAddress + "\" is not an IPv4 address");
  }
  FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket) fail("socket");
  const int on = 1;
  setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    fail("port " + std::to_string(port) + " of " + mAddress + " cannot be had");
  }
  return socket;
}

void TcpServer::arrive() {
  Journal::Fields fields{{"address", mAddress}, {"port", mPort}};
  if (mPrinter.faults().find(FaultKind::Refuse)) {
    mPrinter.journal().write("refusing", fields);
    return;
  }
  mListener = bind(mPort);
  limitReceiveBuffer(mListener.get(), mPrinter.faults());
  if (listen(mListener.get(), kBacklog) != 0) {
    fail("port " + std::to_string(mPort) + " of " + mAddress + " cannot be had");
  }
  mWatch = mLoop.watch(mListener.get(), POLLIN, [this](short) { acceptOne(); });
  mPrinter.journal().write("listening", fields);
}

void TcpServer::leave() {
  if (mConnection) mConnection->abandon();
  mConnection.reset();
  mWatch.reset();
  mListener.reset();
}

void TcpServer::acceptOne() {
  sockaddr_in peer{};
  socklen_t size = sizeof peer;
  FileDescriptor socket(accept4(mListener.get(), reinterpret_cast<sockaddr*>(&peer), &size,
                                SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!socket) return;  // the host has given up already
  mWatch->setEvents(0);
  mConnection = std::make_unique<TcpConnection>(std::move(socket), peerName(peer), mPrinter, mLoop,
                                                [this] { acceptNext(); });
}

void TcpServer::acceptNext() {
  mConnection.reset();
  mWatch->setEvents(POLLIN);
}

}  // namespace virtualprinter
