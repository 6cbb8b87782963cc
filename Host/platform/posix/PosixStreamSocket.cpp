#include "platform/posix/PosixStreamSocket.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "platform/LogHistory.h"
#include "platform/Platform.h"

namespace platform {
namespace {

constexpr std::size_t kReadSize = 65536;

// The host's form of an IPv4 address record; `error` says why there is none.
std::optional<sockaddr_in> hostAddress(const Data& record, int& error) {
  constexpr std::size_t kFamily = 1, kPort = 2, kAddress = 4, kSize = 16;
  error = EINVAL;
  if (record == nullptr || record->size() <= kFamily) return std::nullopt;
  if ((*record)[kFamily] != kAddressFamilyIPv4) error = EAFNOSUPPORT;
  if ((*record)[kFamily] != kAddressFamilyIPv4 || record->size() < kSize) return std::nullopt;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  std::memcpy(&address.sin_port, record->data() + kPort, sizeof address.sin_port);
  std::memcpy(&address.sin_addr, record->data() + kAddress, sizeof address.sin_addr);
  return address;
}

// The program's own texts do not tell one failure from another.
int noted(const char* operation, int error) {
  LogHistory* const history = current().logHistory;
  if (error != 0 && history != nullptr) history->noteHostError(operation, error);
  return error;
}

}  // namespace

PosixStreamSocket::PosixStreamSocket(RunLoop& runLoop, FileDescriptor socket, int error,
                                     unsigned long callbackTypes, Callout callout, void* info)
    : mRunLoop(runLoop),
      mSocket(std::move(socket)),
      mSocketError(error),
      mEnabledTypes(callbackTypes),
      mCallout(callout),
      mInfo(info) {}

PosixStreamSocket::~PosixStreamSocket() = default;

int PosixStreamSocket::connectInBackground(const Data& address) {
  return noted("Connecting", startToConnect(address));
}

int PosixStreamSocket::startToConnect(const Data& address) {
  if (!mSocket) return mSocketError;
  if (mState != State::Made) return mState == State::Connecting ? EALREADY : EISCONN;
  int error = 0;
  const std::optional<sockaddr_in> host = hostAddress(address, error);
  if (!host) return error;
  const auto* const generic = reinterpret_cast<const sockaddr*>(&*host);
  if (::connect(mSocket.get(), generic, sizeof *host) != 0 && errno != EINPROGRESS &&
      errno != EINTR) {
    return errno;
  }
  mAddress = address;
  mState = State::Connecting;
  mWritable = mRunLoop.watch(mSocket.get(), RunLoop::Interest::Writable, [this] { writable(); });
  return 0;
}

void PosixStreamSocket::enableCallbacks(unsigned long types) {
  mEnabledTypes |= types;
  if (mState != State::Connected) return;
  mWritable->setEnabled(isEnabled(kWriteCallback));
  mReadable->setEnabled(isEnabled(kDataCallback) && !mEnded);
}

int PosixStreamSocket::send(std::span<const std::uint8_t> bytes, double timeoutSeconds,
                            const Progress& progress) {
  return noted("Sending", sendAll(bytes, timeoutSeconds, progress));
}

int PosixStreamSocket::sendAll(std::span<const std::uint8_t> bytes, double timeoutSeconds,
                               const Progress& progress) {
  if (mState != State::Connected) return mSocketError != 0 ? mSocketError : ENOTCONN;
  const auto timeout = std::chrono::duration<double>(timeoutSeconds);
  const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(timeout);
  std::size_t taken = 0;
  while (taken < bytes.size()) {
    const auto rest = bytes.subspan(taken);
    const ssize_t count = ::send(mSocket.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
    if (count >= 0) {
      taken += static_cast<std::size_t>(count);
      if (progress) progress(taken);
    } else if (errno == EAGAIN) {
      if (!mRunLoop.waitUntilReady(mSocket.get(), RunLoop::Interest::Writable, deadline)) {
        abandon();
        return ETIMEDOUT;
      }
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

void PosixStreamSocket::writable() {
  if (mState == State::Connecting) {
    connectEnded();
    return;
  }
  mEnabledTypes &= ~static_cast<unsigned long>(kWriteCallback);
  mWritable->setEnabled(false);
  call(kWriteCallback, nullptr);
}

void PosixStreamSocket::connectEnded() {
  int error = 0;
  socklen_t size = sizeof error;
  if (::getsockopt(mSocket.get(), SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
  noted("Connecting", error);
  if (error != 0) {
    mState = State::Dead;
    mWritable->setEnabled(false);
  } else {
    mState = State::Connected;
    mReadable = mRunLoop.watch(mSocket.get(), RunLoop::Interest::Readable, [this] { readable(); });
    enableCallbacks(0);
  }
  if (isEnabled(kConnectCallback)) call(kConnectCallback, error != 0 ? &error : nullptr);
}

void PosixStreamSocket::readable() {
  std::array<std::uint8_t, kReadSize> buffer;
  const ssize_t count = ::recv(mSocket.get(), buffer.data(), buffer.size(), 0);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  // A connection that the printer broke off ends like one that it closed.
  const std::size_t size = count < 0 ? 0 : static_cast<std::size_t>(count);
  if (size == 0) {
    mEnded = true;
    mReadable->setEnabled(false);
  }
  const Data data = makeData({buffer.data(), buffer.data() + size});
  call(kDataCallback, &data);
}

// The program may destroy this socket in its callout: nothing may follow a call of this.
void PosixStreamSocket::call(CallbackType type, const void* data) {
  const Data address = mAddress;
  mCallout(this, type, address, data, mInfo);
}

// What was not sent of a message must not follow later: the printer would wait for its rest.
void PosixStreamSocket::abandon() {
  mState = State::Dead;
  mReadable.reset();
  mWritable.reset();
  const linger discard{1, 0};
  ::setsockopt(mSocket.get(), SOL_SOCKET, SO_LINGER, &discard, sizeof discard);
  mSocket = FileDescriptor();
}

}  // namespace platform
