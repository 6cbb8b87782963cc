// The transport to a printer on the network: one TCP connection to the address that service
// discovery resolved, IPv4 only. Connect and write-ready callbacks resume the controller directly;
// a read posts a resume once enough bytes are there, at once or later. It never gives up waiting.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "IoTransport.h"
#include "PrinterLock.h"
#include "RawDataCollector.h"
#include "platform/Data.h"
#include "platform/DeviceLocks.h"
#include "platform/Network.h"

class FirmwareDownloader;

class NetworkTransport : public IoTransport {
 public:
  // `use` says what for, to those who want the same printer.
  NetworkTransport(const platform::Data& address, FirmwareDownloader& downloader,
                   platform::DeviceUse use = platform::DeviceUse::Update);

  // Closes the connection.
  ~NetworkTransport() override;

  NetworkTransport(const NetworkTransport&) = delete;
  NetworkTransport& operator=(const NetworkTransport&) = delete;

  // A connection that cannot be made shows in the next write. Throws std::runtime_error when it
  // cannot be tried, or when another program of this computer updates the printer. One that only
  // asks it something is waited for first.
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

  void lockAwaited(bool isGranted);

  static void socketDataCallback(platform::StreamSocket* socket, unsigned long type,
                                 const platform::Data& address, const void* data, void* info);

  // The controller may have deleted this transport when the first two return.
  void handleConnect();
  void handleWriteReady();
  void handleArrivingData(const platform::Data* data);
  void checkDataForReadRequest();

  FirmwareDownloader& mDownloader;
  const platform::Data mAddress;
  const platform::DeviceUse mUse;
  std::optional<PrinterLock> mLock;  // until the connection is closed
  std::unique_ptr<platform::StreamSocket> mSocket;
  ReadRequest mReadRequest;
  RawDataCollector mReceived;
  bool mWritePending = false;
};

// Starts a download to the printer at `address`.
void downloadFirmwareThroughNetwork(const platform::Data& address, FirmwareDownloader& downloader);
