// A registry of USB devices that a test attaches and detaches by hand. It behaves as the surface
// says, counts references and keeps the order of all calls; a test scripts the failures. Transfers
// stay under way until the test ends them, or their time is over on the run loop, or the device is
// detached; like the notifications, their ends are put off to the run loop. Must outlive everything
// that uses it.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FakeUsbDevice.h"
#include "FakeUsbRecord.h"
#include "platform/RunLoop.h"
#include "platform/UsbRegistry.h"

struct FakeUsbEntry;
class FakeUsbInterfaceObject;
class FakeUsbPort;

struct FakeUsbTransfer {
  std::string interface;
  bool isRead = false;
  std::uint8_t pipe = 0;
  char* target = nullptr;        // of a read
  const void* source = nullptr;  // of a write
  std::string written;           // by a write
  std::uint32_t size = 0;
  std::uint32_t noDataTimeout = 0;      // in milliseconds
  std::uint32_t completionTimeout = 0;  // in milliseconds
  platform::IOAsyncCallback callback = nullptr;
  void* refCon = nullptr;
  FakeUsbInterfaceObject* object = nullptr;
  std::shared_ptr<platform::RunLoop::Timer> timer;  // when its time is limited
  bool cancelled = false;
};

class FakeUsbRegistry : public platform::UsbRegistry {
 public:
  struct Interest {
    platform::io_object_t notification;
    FakeUsbPort* port;  // null after the port's end
    platform::io_service_t service;
    platform::IOServiceInterestCallback callback;
    void* refCon;
  };

  struct Match {
    platform::io_iterator_t iterator;
    FakeUsbPort* port;
    platform::MatchingDictionary matching;
    platform::IOServiceMatchingCallback callback;
    void* refCon;
    bool armed;
  };

  FakeUsbRegistry();
  ~FakeUsbRegistry() override;

  // The returned number carries no reference.
  platform::io_service_t attach(const FakeUsbDevice& device);
  platform::io_service_t interfaceOf(platform::io_service_t device, std::size_t index = 0) const;
  // Transfers under way end with kIOReturnNoDevice.
  void detach(platform::io_service_t service);

  // Another program takes the interface for itself, or gives it back.
  void claimElsewhere(platform::io_service_t interface, bool isClaimed);

  void sendMessage(platform::io_service_t service, std::uint32_t messageType);

  // Makes the armed arrival notifications come again for a device that they have given before.
  void announceAgain(platform::io_service_t service);

  // Makes the next such call fail, or succeed without giving what it should. See FakeUsbRecord.
  void script(const std::string& call, platform::IOReturn result, bool withObject = false);

  std::vector<std::string> takeCalls() { return mRecord.takeCalls(); }

  // What must be empty at the end of a test: references not given back or given back twice,
  // scripted answers that nobody asked for, ends of transfers that nobody started.
  std::vector<std::string> problems() const;

  int references(platform::io_object_t object) const;

  // Whether the product has this interface open, or this device as a whole.
  bool isOpen(platform::io_service_t service) const;

  // Plug-ins that are not released yet.
  int plugIns() const { return mPlugIns; }

  // Ends the oldest transfer under way, or records a problem. A read gets the bytes.
  void completeRead(const std::string& bytes);
  void completeWrite(std::size_t numBytes);
  void failTransfer(platform::IOReturn result);

  // Ends it with whatever number of bytes, and none in the buffer.
  void claimCompletion(std::size_t numBytes);

  // The same for the transfer that is meant.
  void completeRead(const std::shared_ptr<FakeUsbTransfer>& transfer, const std::string& bytes);
  void completeWrite(const std::shared_ptr<FakeUsbTransfer>& transfer, std::size_t numBytes);

  // Transfers of the pipe, those under way and later ones, end with kIOUSBPipeStalled until the
  // pipe is cleared.
  void stall(platform::io_service_t interface, std::uint8_t pipe);

  // The oldest first.
  const std::deque<std::shared_ptr<FakeUsbTransfer>>& transfers() const { return mTransfers; }
  const std::vector<Interest>& interests() const { return mInterests; }
  const std::vector<Match>& matches() const { return mMatches; }

  void retain(platform::io_object_t object) override;
  void release(platform::io_object_t object) override;
  platform::io_object_t iteratorNext(platform::io_iterator_t iterator) override;
  platform::IOReturn entryName(platform::io_registry_entry_t number, std::string& name) override;
  std::optional<platform::PropertyValue> property(platform::io_registry_entry_t number,
                                                  const char* key) override;
  platform::IOReturn properties(platform::io_registry_entry_t number,
                                platform::PropertyDictionary& dictionary) override;
  std::optional<platform::MatchingDictionary> serviceMatching(const char* className) override;
  platform::IOReturn matchingServices(const platform::MatchingDictionary& matching,
                                      platform::io_iterator_t& iterator) override;
  std::unique_ptr<platform::UsbNotificationPort> createNotificationPort() override;
  platform::IOReturn addMatchingNotification(platform::UsbNotificationPort& port, const char* type,
                                             const platform::MatchingDictionary& matching,
                                             platform::IOServiceMatchingCallback callback,
                                             void* refCon,
                                             platform::io_iterator_t& iterator) override;
  platform::IOReturn addInterestNotification(platform::UsbNotificationPort& port,
                                             platform::io_service_t service, const char* type,
                                             platform::IOServiceInterestCallback callback,
                                             void* refCon,
                                             platform::io_object_t& notification) override;
  platform::IOReturn createPlugIn(platform::io_service_t service, ClientType type,
                                  std::unique_ptr<platform::UsbPlugIn>& plugIn) override;

 private:
  friend class FakeUsbPort;
  friend class FakeUsbDeviceObject;
  friend class FakeUsbInterfaceObject;
  friend class FakeUsbPlugIn;

  platform::io_object_t newObject(const std::string& label);
  platform::io_iterator_t newIterator(std::vector<platform::io_service_t> entries);
  platform::io_service_t addEntry(std::shared_ptr<FakeUsbEntry> entry);
  std::shared_ptr<FakeUsbEntry> entry(platform::io_registry_entry_t number) const;
  std::string label(platform::io_object_t object) const;

  // Null for what is no entry, or one that is neither attached nor referred to any more.
  std::shared_ptr<FakeUsbEntry> find(platform::io_registry_entry_t number) const;
  void unreference(platform::io_object_t object);
  std::vector<platform::io_service_t> matchingEntries(
      const platform::MatchingDictionary& matching) const;
  void arrive(platform::io_service_t service);
  std::shared_ptr<FakeUsbTransfer> oldest();
  void end(const std::shared_ptr<FakeUsbTransfer>& transfer, platform::IOReturn result,
           std::size_t numBytes);
  void endAll(const std::function<bool(const FakeUsbTransfer&)>& isMeant,
              platform::IOReturn result);
  void forgetPort(const FakeUsbPort& port);

  FakeUsbRecord mRecord;
  std::map<platform::io_object_t, std::string> mLabels;
  std::map<platform::io_object_t, int> mReferences;
  std::map<platform::io_service_t, std::shared_ptr<FakeUsbEntry>> mEntries;
  std::map<platform::io_iterator_t, std::deque<platform::io_service_t>> mIterators;
  std::map<std::string, int> mCounters;
  int mPlugIns = 0;
  std::vector<Interest> mInterests;
  std::vector<Match> mMatches;
  std::deque<std::shared_ptr<FakeUsbTransfer>> mTransfers;
};
