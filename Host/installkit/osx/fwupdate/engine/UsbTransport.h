// The transport to a printer attached by USB: its ACL channel. The channel's completions post a
// resume to the controller, or its failure; nothing is called back directly. It keeps a handle on
// the device, and with it the channel, for its own life. A transfer under way ends with the last
// handle: the controller drops a transport between transfers, or at the end of the program, when
// nobody else has a handle any more.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>

#include "AsyncIoNotifier.h"
#include "IoTransport.h"
#include "QuillUsbDevice.h"

class FirmwareDownloader;

class UsbTransport : public IoTransport {
 public:
  UsbTransport(const QuillUsbDevice& device, FirmwareDownloader& downloader);
  ~UsbTransport() override;

  UsbTransport(const UsbTransport&) = delete;
  UsbTransport& operator=(const UsbTransport&) = delete;

  // There is nothing to open: posts a resume at once.
  void connect() override;

  // The time-out is that of each of the transfers that a read takes, 20 seconds where none is
  // given; a write is one transfer and has 200 milliseconds. Throw IoKitException when a transfer
  // cannot be started.
  void read(void* buffer, std::size_t length) override;
  void read(void* buffer, std::size_t length, unsigned int timeout) override;
  void write(const void* buffer, std::size_t length) override;
  // Nothing is known of a transfer between its start and its end: `progress` hears of the end.
  void write(const void* buffer, std::size_t length, const Progress& progress) override;

 private:
  class Notifier : public AsyncIoNotifier {
   public:
    explicit Notifier(FirmwareDownloader& downloader) : mDownloader(downloader) {}

    // To be called at the end of the request that is started next, unless it fails. May be empty.
    void whenComplete(std::function<void()> completed) { mCompleted = std::move(completed); }

    void complete() override;
    void failed(const std::string& message) override;

   private:
    FirmwareDownloader& mDownloader;
    std::function<void()> mCompleted;
  };

  QuillUsbDevice mDevice;
  FirmwareDownloader& mDownloader;
  Notifier mNotifier;
};

// Starts a download to the printer.
void downloadFirmwareThroughUsb(const QuillUsbDevice& device, FirmwareDownloader& downloader);
