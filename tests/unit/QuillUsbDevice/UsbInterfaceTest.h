// One interface of a device, with the pipes that a test wants.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "UsbInterface.h"
#include "UsbTest.h"

class UsbInterfaceTest : public UsbTest {
 protected:
  void TearDown() override { mInterface.reset(); }

  platform::io_service_t attach(const std::vector<platform::UsbPipeProperties>& pipes) {
    FakeUsbDevice device;
    device.interfaces = {{7, "Printer", pipes, {}}};
    mDevice = mUsb.attach(device);
    return mUsb.interfaceOf(mDevice);
  }

  void make(const std::vector<platform::UsbPipeProperties>& pipes = {outPipe(), inPipe()}) {
    mInterface = std::make_unique<UsbInterface>(attach(pipes));
    mUsb.takeCalls();
  }

  // Makes the interface, and opens it by a write that is over before the test begins.
  void makeOpen(const std::vector<platform::UsbPipeProperties>& pipes = {outPipe(), inPipe()}) {
    make(pipes);
    RecordingNotifier notifier;
    write("x", notifier);
    mUsb.completeWrite(1);
    mLoop.runAllLater();
    mUsb.takeCalls();
  }

  void write(const std::string& bytes, AsyncIoNotifier& notifier) {
    mInterface->write(bytes.data(), bytes.size(), notifier, 200);
  }

  void write(const std::string& bytes) { write(bytes, mNotifier); }

  // Into mBuffer, which it first makes that long.
  void read(std::size_t len, unsigned int timeout = 20000) {
    mBuffer.assign(len, '?');
    mInterface->read(mBuffer.data(), len, mNotifier, timeout);
  }

  // The device sends the bytes to the transfer under way.
  void send(const std::string& bytes) {
    mUsb.completeRead(bytes);
    mLoop.runAllLater();
  }

  void fail(platform::IOReturn result) {
    mUsb.failTransfer(result);
    mLoop.runAllLater();
  }

  platform::io_service_t mDevice = 0;
  RecordingNotifier mNotifier;
  std::string mBuffer;
  std::unique_ptr<UsbInterface> mInterface;
};
