#include "NetworkTransport.h"

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "FirmwareDownloader.h"
#include "Log.h"
#include "platform/Platform.h"

using platform::StreamSocket;

namespace {

constexpr unsigned long kReadAndWriteCallbacks =
    StreamSocket::kDataCallback | StreamSocket::kWriteCallback;
constexpr unsigned long kAllCallbacks = kReadAndWriteCallbacks | StreamSocket::kConnectCallback;
constexpr double kSendTimeoutSeconds = 5.0;

}  // namespace

NetworkTransport::NetworkTransport(const platform::Data& address, FirmwareDownloader& downloader,
                                   platform::DeviceUse use)
    : mDownloader(downloader), mAddress(address), mUse(use) {
  mSocket = platform::current().network->createStreamSocket(
      kAllCallbacks, &NetworkTransport::socketDataCallback, this);
}

NetworkTransport::~NetworkTransport() {
  Log<5>() << "Cleaning up network transport." << std::flush;
  mSocket.reset();
}

void NetworkTransport::connect() {
  mLock.emplace(mAddress, mUse);
  if (!mLock->isGranted()) {
    mLock->await([this](bool isGranted) { lockAwaited(isGranted); });
    return;
  }
  if (mSocket->connectInBackground(mAddress) != 0) {
    throw std::runtime_error("Unable to connect to socket");
  }
}

// Without a connection, the next write fails.
void NetworkTransport::lockAwaited(bool isGranted) {
  if (isGranted && mSocket->connectInBackground(mAddress) == 0) return;
  mDownloader.resume();
}

void NetworkTransport::read(void* buffer, std::size_t length) {
  Log<5>() << "Async read request for " << std::dec << length << " bytes." << std::flush;
  validate(buffer, length);
  mReadRequest = {static_cast<unsigned char*>(buffer), length};
  checkDataForReadRequest();
}

void NetworkTransport::read(void* buffer, std::size_t length, unsigned int) {
  read(buffer, length);
}

void NetworkTransport::write(const void* buffer, std::size_t length) { write(buffer, length, {}); }

void NetworkTransport::write(const void* buffer, std::size_t length, const Progress& progress) {
  Log<5>() << "Async write request for " << std::dec << length << " bytes." << std::flush;
  validate(buffer, length);
  mSocket->enableCallbacks(kReadAndWriteCallbacks);
  mWritePending = true;
  const std::span bytes(static_cast<const std::uint8_t*>(buffer), length);
  if (mSocket->send(bytes, kSendTimeoutSeconds, progress) != 0) {
    throw std::runtime_error("Unable to write data");
  }
}

void NetworkTransport::socketDataCallback(StreamSocket*, unsigned long type, const platform::Data&,
                                          const void* data, void* info) {
  if (info == nullptr) return;
  NetworkTransport& transport = *static_cast<NetworkTransport*>(info);
  switch (type) {
    case StreamSocket::kConnectCallback:
      transport.handleConnect();
      break;
    case StreamSocket::kWriteCallback:
      transport.handleWriteReady();
      break;
    case StreamSocket::kDataCallback:
      transport.handleArrivingData(static_cast<const platform::Data*>(data));
      break;
    default:
      break;
  }
}

// Whether the connection was made is not asked: the next write tells.
void NetworkTransport::handleConnect() {
  Log<5>() << "Network socket connected." << std::flush;
  mDownloader.resume();
}

void NetworkTransport::handleWriteReady() {
  Log<5>() << "Network ready for write." << std::flush;
  if (std::exchange(mWritePending, false)) mDownloader.resume();
}

void NetworkTransport::handleArrivingData(const platform::Data* data) {
  if (data == nullptr || *data == nullptr) return;
  const std::vector<std::uint8_t>& bytes = **data;
  Log<5>() << "Network data arriving [" << std::dec << bytes.size() << " bytes]." << std::flush;
  mReceived.pushBackData(bytes.data(), bytes.size());
  checkDataForReadRequest();
}

void NetworkTransport::checkDataForReadRequest() {
  if (mReadRequest.mLength == 0 || mReadRequest.mLength > mReceived.size()) return;
  const ReadRequest served = std::exchange(mReadRequest, {});
  mReceived.popData(served.mDestination, served.mDestination + served.mLength);
  mDownloader.enqueueResume();
}

void downloadFirmwareThroughNetwork(const platform::Data& address, FirmwareDownloader& downloader) {
  downloader.start(std::make_unique<NetworkTransport>(address, downloader));
}
