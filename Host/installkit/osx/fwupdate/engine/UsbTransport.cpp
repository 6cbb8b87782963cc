#include "UsbTransport.h"

#include <memory>

#include "FirmwareDownloader.h"
#include "Log.h"

namespace {

constexpr unsigned int kReadTimeoutMs = 20000;
constexpr unsigned int kWriteTimeoutMs = 200;

}  // namespace

UsbTransport::UsbTransport(const QuillUsbDevice& device, FirmwareDownloader& downloader)
    : mDevice(device), mDownloader(downloader), mNotifier(downloader) {}

UsbTransport::~UsbTransport() { Log<5>() << "Cleaning up USB transport." << std::flush; }

void UsbTransport::connect() { mDownloader.enqueueResume(); }

void UsbTransport::read(void* buffer, std::size_t length) { read(buffer, length, kReadTimeoutMs); }

void UsbTransport::read(void* buffer, std::size_t length, unsigned int timeout) {
  Log<5>() << "Async read request for " << std::dec << length << " bytes." << std::flush;
  validate(buffer, length);
  mDevice.aclRead(buffer, length, mNotifier, timeout);
}

void UsbTransport::write(const void* buffer, std::size_t length) { write(buffer, length, {}); }

void UsbTransport::write(const void* buffer, std::size_t length, const Progress& progress) {
  Log<5>() << "Async write request for " << std::dec << length << " bytes." << std::flush;
  validate(buffer, length);
  if (progress) mNotifier.whenComplete([progress, length] { progress(length); });
  mDevice.aclWrite(buffer, length, mNotifier, kWriteTimeoutMs);
}

void UsbTransport::Notifier::complete() {
  if (const auto completed = std::exchange(mCompleted, nullptr)) completed();
  mDownloader.enqueueResume();
}

void UsbTransport::Notifier::failed(const std::string& message) {
  Log<3>() << message << std::flush;
  mDownloader.notifyAsyncFailure();
}

void downloadFirmwareThroughUsb(const QuillUsbDevice& device, FirmwareDownloader& downloader) {
  downloader.start(std::make_unique<UsbTransport>(device, downloader));
}
