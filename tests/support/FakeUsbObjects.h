// The I/O objects of a FakeUsbRegistry. They write to its record, and put their transfers into its
// list. Not for tests themselves.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "FakeUsbDevice.h"
#include "FakeUsbRegistry.h"

class FakeUsbDeviceObject;

// One entry: a device, or an interface of one.
struct FakeUsbEntry {
  std::string label;
  platform::io_service_t number = 0;
  bool attached = true;
  bool isDevice = false;
  FakeUsbDevice device;                                // of a device
  std::vector<platform::io_service_t> interfaces;      // of a device
  FakeUsbInterface interface;                          // of an interface
  platform::io_service_t parent = 0;                   // of an interface
  const FakeUsbInterfaceObject* openedBy = nullptr;    // of an interface
  bool isClaimedElsewhere = false;                     // of an interface
  const FakeUsbDeviceObject* wholeOpenedBy = nullptr;  // of a device
  std::set<std::uint8_t> stalledPipes;                 // of an interface

  const platform::PropertyDictionary& properties() const {
    return isDevice ? device.properties : interface.properties;
  }
};

class FakeUsbPort : public platform::UsbNotificationPort {
 public:
  explicit FakeUsbPort(FakeUsbRegistry& registry) : mRegistry(registry) {}
  ~FakeUsbPort() override;
  void addTo(platform::RunLoop& runLoop) override;

  platform::RunLoop* runLoop() const { return mRunLoop; }

 private:
  FakeUsbRegistry& mRegistry;
  platform::RunLoop* mRunLoop = nullptr;
};

class FakeUsbPlugIn : public platform::UsbPlugIn {
 public:
  FakeUsbPlugIn(FakeUsbRegistry& registry, std::shared_ptr<FakeUsbEntry> entry)
      : mRegistry(registry), mEntry(std::move(entry)) {
    ++mRegistry.mPlugIns;
  }
  ~FakeUsbPlugIn() override;
  platform::IOReturn queryDevice(std::unique_ptr<platform::UsbDeviceObject>& device) override;
  platform::IOReturn queryInterface(
      std::unique_ptr<platform::UsbInterfaceObject>& interface) override;

 private:
  FakeUsbRegistry& mRegistry;
  std::shared_ptr<FakeUsbEntry> mEntry;
};

class FakeUsbDeviceObject : public platform::UsbDeviceObject {
 public:
  FakeUsbDeviceObject(FakeUsbRegistry& registry, std::shared_ptr<FakeUsbEntry> entry)
      : mRegistry(registry), mEntry(std::move(entry)) {}
  ~FakeUsbDeviceObject() override;
  platform::IOReturn open() override;
  platform::IOReturn close() override;
  platform::IOReturn reEnumerate() override;
  platform::IOReturn createInterfaceIterator(const platform::IOUSBFindInterfaceRequest& request,
                                             platform::io_iterator_t& iterator) override;

 private:
  bool isOpen() const { return mEntry->wholeOpenedBy == this; }
  void endSession();

  FakeUsbRegistry& mRegistry;
  std::shared_ptr<FakeUsbEntry> mEntry;
};

class FakeUsbInterfaceObject : public platform::UsbInterfaceObject,
                               private platform::UsbEventSource {
 public:
  FakeUsbInterfaceObject(FakeUsbRegistry& registry, std::shared_ptr<FakeUsbEntry> entry)
      : mRegistry(registry), mEntry(std::move(entry)) {}
  ~FakeUsbInterfaceObject() override;
  platform::IOReturn open() override;
  platform::IOReturn close() override;
  platform::IOReturn getNumEndpoints(std::uint8_t& count) override;
  platform::IOReturn getPipeProperties(std::uint8_t pipe,
                                       platform::UsbPipeProperties& properties) override;
  platform::IOReturn createAsyncEventSource(platform::UsbEventSource*& source) override;
  platform::IOReturn clearPipeStallBothEnds(std::uint8_t pipe) override;
  platform::IOReturn readPipeAsyncTO(std::uint8_t pipe, void* buffer, std::uint32_t size,
                                     std::uint32_t noDataTimeout, std::uint32_t completionTimeout,
                                     platform::IOAsyncCallback callback, void* refCon) override;
  platform::IOReturn writePipeAsyncTO(std::uint8_t pipe, const void* buffer, std::uint32_t size,
                                      std::uint32_t noDataTimeout, std::uint32_t completionTimeout,
                                      platform::IOAsyncCallback callback, void* refCon) override;

  bool isAttached() const { return mEntry->attached; }
  bool isOf(platform::io_service_t service) const { return mEntry->number == service; }

  // Calls back from the run loop, as soon as there is one, unless the transfer is cancelled first.
  void deliver(std::shared_ptr<FakeUsbTransfer> transfer, platform::IOReturn result,
               std::size_t numBytes);

 private:
  void addTo(platform::RunLoop& runLoop) override;
  std::string line(const std::string& call) const { return call + " " + mEntry->label; }
  platform::IOReturn usualWhenOpen() const;
  platform::IOReturn usualFor(std::uint8_t pipe) const;
  platform::IOReturn usualFor(const FakeUsbTransfer& transfer) const;
  FakeUsbTransfer transferOf(std::uint8_t pipe, std::uint32_t size,
                             platform::IOAsyncCallback callback, void* refCon);
  platform::IOReturn start(const std::string& call, const FakeUsbTransfer& started,
                           std::uint32_t noDataTimeout, std::uint32_t completionTimeout);
  void limitTime(const std::shared_ptr<FakeUsbTransfer>& transfer, std::uint32_t timeout);
  void endSession();

  FakeUsbRegistry& mRegistry;
  std::shared_ptr<FakeUsbEntry> mEntry;
  bool mIsOpen = false;
  bool mHasSource = false;
  platform::RunLoop* mRunLoop = nullptr;
  std::vector<std::weak_ptr<FakeUsbTransfer>> mStarted;
  std::vector<std::function<void()>> mUndelivered;  // until there is a run loop
};
