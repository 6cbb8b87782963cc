#include "TcpConnection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace virtualprinter {
namespace {

constexpr std::size_t kReadsPerEvent = 64;

}  // namespace

TcpConnection::TcpConnection(FileDescriptor socket, const std::string& peer, Printer& printer,
                             EventLoop& loop, std::function<void()> finished)
    : mSocket(std::move(socket)),
      mLoop(loop),
      mFinished(std::move(finished)),
      mConversation(printer, *this, peer) {
  const int on = 1;
  setsockopt(mSocket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  mWatch = mLoop.watch(mSocket.get(), POLLIN, [this](short events) { ready(events); });
  mConversation.begin();
  if (const Fault* slow = mConversation.faults().find(FaultKind::Slow)) mPace = slow->pace;
}

TcpConnection::~TcpConnection() = default;

void TcpConnection::abandon() { mConversation.abandon(); }

void TcpConnection::ready(short events) {
  if ((events & POLLOUT) != 0) flush();
  if (mClosing) return;
  if (mReading && (events & (POLLIN | POLLHUP | POLLERR)) != 0) {
    readAvailable();
  } else if ((events & (POLLHUP | POLLERR)) != 0) {
    mUnsent.clear();
    mWatch.reset();
    mConversation.lost("the connection is broken");
  }
}

void TcpConnection::readAvailable() {
  for (std::size_t i = 0; i < kReadsPerEvent && mReading && !mConversation.ended(); ++i) {
    if (!readOnce()) return;
    if (!mPace) continue;
    mReading = false;
    mPaceTimer = mLoop.after(mPace->period, [this] { paused(); });
    updateEvents();
  }
}

// False when there is nothing more to read now.
bool TcpConnection::readOnce() {
  std::array<std::uint8_t, 65536> buffer;
  std::span<std::uint8_t> space = mConversation.imageSpace();
  const bool direct = !space.empty();
  if (!direct) space = buffer;
  if (mPace) space = space.first(std::min(space.size(), mPace->size));
  const ssize_t count = recv(mSocket.get(), space.data(), space.size(), 0);
  if (count > 0) {
    const auto size = static_cast<std::size_t>(count);
    if (direct) {
      mConversation.imageReceived(size);
    } else {
      mConversation.received(space.first(size));
    }
    return true;
  }
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return false;
  const std::string reason = count < 0 ? std::strerror(errno) : "";
  mReading = false;
  if (count == 0) {
    updateEvents();
    mConversation.hostFinished();
  } else {
    mUnsent.clear();
    mWatch.reset();
    mConversation.lost(reason);
  }
  return false;
}

void TcpConnection::paused() {
  mPaceTimer.reset();
  mReading = true;
  updateEvents();
}

void TcpConnection::send(std::span<const std::uint8_t> bytes) {
  if (!mUnsent.empty()) {
    mUnsent.insert(mUnsent.end(), bytes.begin(), bytes.end());
    return;
  }
  const ssize_t count = ::send(mSocket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  if (count < 0 && errno != EAGAIN) return;  // a broken connection shows when it is read
  const auto sent = static_cast<std::ptrdiff_t>(std::max<ssize_t>(count, 0));
  mUnsent.assign(bytes.begin() + sent, bytes.end());
  updateEvents();
}

void TcpConnection::flush() {
  const ssize_t count = ::send(mSocket.get(), mUnsent.data(), mUnsent.size(), MSG_NOSIGNAL);
  if (count < 0 && errno == EAGAIN) return;
  if (count < 0) {
    mUnsent.clear();
  } else {
    mUnsent.erase(mUnsent.begin(), mUnsent.begin() + count);
  }
  updateEvents();
  finishWhenSent();
}

void TcpConnection::stopReading() {
  mReading = false;
  mPaceTimer.reset();
  mPace.reset();
  updateEvents();
}

void TcpConnection::close() {
  stopReading();
  dropArrivedBytes();
  mClosing = true;
  finishWhenSent();
}

// A socket that is closed with unread bytes resets the connection.
void TcpConnection::dropArrivedBytes() {
  std::array<std::uint8_t, 65536> buffer;
  for (std::size_t i = 0; i < kReadsPerEvent; ++i) {
    if (recv(mSocket.get(), buffer.data(), buffer.size(), 0) <= 0) return;
  }
}

void TcpConnection::reset() {
  mUnsent.clear();
  const linger abortive{1, 0};
  setsockopt(mSocket.get(), SOL_SOCKET, SO_LINGER, &abortive, sizeof abortive);
  close();
}

void TcpConnection::perform(const Fault& fault) {
  if (fault.kind == FaultKind::Shutdown) shutdown(mSocket.get(), SHUT_WR);
}

void TcpConnection::updateEvents() {
  if (!mWatch) return;
  int events = 0;
  if (mReading) events |= POLLIN;
  if (!mUnsent.empty()) events |= POLLOUT;
  mWatch->setEvents(static_cast<short>(events));
}

void TcpConnection::finishWhenSent() {
  if (!mClosing || !mUnsent.empty() || mFinishTimer) return;
  mWatch.reset();
  mSocket.reset();
  mFinishTimer = mLoop.after(std::chrono::microseconds(0), [this] { mFinished(); });
}

}  // namespace virtualprinter
