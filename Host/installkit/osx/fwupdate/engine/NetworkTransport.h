// The transport to a printer on the network: one TCP connection to the address that service
// discovery resolved, IPv4 only. Connect and write-ready callbacks resume the controller directly;
// a read posts a resume once enough bytes are there, at once or later. It never gives up waiting.
#pragma once

#include <cstddef>
#include <memory>

#include "IoTransport.h"
#include "RawDataCollector.h"
#include "platform/Data.h"
#include "platform/DeviceLocks.h"
#include "platform/Network.h"

class FirmwareDownloader;

class NetworkTransport : public IoTransport {
 public:
  NetworkTransport(const platform::Data& address, FirmwareDownloader& downloader);

  // Closes the connection.
  ~NetworkTransport() override;

  NetworkTransport(const NetworkTransport&) = delete;
  NetworkTransport& operator=(const NetworkTransport&) = delete;

  // A connection that cannot be made shows in the next write. Throws std::runtime_error when it
  // cannot be tried, or when another program of this computer is at the printer.
  void connect() override;

  void read(void* buffer, std::size_t length) override;
  void read(void* buffer, std::size_t length, unsigned int timeout) override;

  // Blocks until the host has taken all bytes, 5 seconds at most.
  void write(const void* buffer, std::size_t length) override;
  void write(const void* buffer, std::size_t length, const Progress& progress) override;

 private:
  struct ReadRequest {
    unsigned char* mDestination = nullptr;
    std::size_t mLength = 0;  // 0: no read is pending
  };

  static void socketDataCallback(platform::StreamSocket* socket, unsigned long type,
                                 const platform::Data& address, const void* data, void* info);

  // The controller may have deleted this transport when the first two return.
  void handleConnect();
  void handleWriteReady();
  void handleArrivingData(const platform::Data* data);
  void checkDataForReadRequest();

  FirmwareDownloader& mDownloader;
  const platform::Data mAddress;
  std::unique_ptr<platform::DeviceLock> mLock;  // until the connection is closed
  std::unique_ptr<platform::StreamSocket> mSocket;
  ReadRequest mReadRequest;
  RawDataCollector mReceived;
  bool mWritePending = false;
};

// Starts a download to the printer at `address`.
void downloadFirmwareThroughNetwork(const platform::Data& address, FirmwareDownloader& downloader);
