// The registry's reference-counted objects and the numbers by which the product knows them. The
// table lives as long as somebody holds a reference through ObjectReference or uses the registry.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/UsbRegistry.h"
#include "platform/libusb/AttachedDevice.h"

namespace platform {

class RegistryObject {
 public:
  virtual ~RegistryObject() = default;
};

class ObjectTable {
 public:
  // With one reference, the caller's.
  io_object_t add(std::shared_ptr<RegistryObject> object);

  // 0 and unknown numbers are ignored.
  void retain(io_object_t number);
  void release(io_object_t number);

  // Null when the number is unknown, or of something else.
  template <typename T>
  std::shared_ptr<T> find(io_object_t number) const {
    const auto found = mObjects.find(number);
    return found == mObjects.end() ? nullptr : std::dynamic_pointer_cast<T>(found->second.object);
  }

 private:
  struct Counted {
    std::shared_ptr<RegistryObject> object;
    std::size_t references;
  };

  std::map<io_object_t, Counted> mObjects;
  io_object_t mLastNumber = 0;
};

// One counted reference.
class ObjectReference {
 public:
  // Takes over a reference that exists.
  static ObjectReference adopt(const std::shared_ptr<ObjectTable>& table, io_object_t number) {
    return {table, number};
  }
  static ObjectReference retain(const std::shared_ptr<ObjectTable>& table, io_object_t number) {
    table->retain(number);
    return {table, number};
  }

  ObjectReference(ObjectReference&& other) noexcept
      : mTable(std::move(other.mTable)), mNumber(std::exchange(other.mNumber, 0)) {}
  ObjectReference& operator=(ObjectReference&& other) noexcept {
    std::swap(mTable, other.mTable);
    std::swap(mNumber, other.mNumber);
    return *this;
  }
  ~ObjectReference() {
    if (const auto table = mTable.lock()) table->release(mNumber);
  }

  io_object_t number() const { return mNumber; }

  // Passes the reference on.
  io_object_t take() { return std::exchange(mNumber, 0); }

 private:
  ObjectReference(const std::shared_ptr<ObjectTable>& table, io_object_t number)
      : mTable(table), mNumber(number) {}

  std::weak_ptr<ObjectTable> mTable;  // the table owns what holds references
  io_object_t mNumber;
};

// An entry of the registry: a device or an interface.
class RegistryEntry : public RegistryObject {
 public:
  explicit RegistryEntry(std::shared_ptr<AttachedDevice> device) : mDevice(std::move(device)) {}
  const std::shared_ptr<AttachedDevice>& device() const { return mDevice; }
  virtual const std::string& name() const = 0;
  virtual const PropertyDictionary& properties() const = 0;

 private:
  std::shared_ptr<AttachedDevice> mDevice;
};

class InterfaceEntry : public RegistryEntry {
 public:
  // `index` counts the interfaces in the device's description.
  InterfaceEntry(std::shared_ptr<AttachedDevice> device, std::size_t index)
      : RegistryEntry(std::move(device)), mIndex(index) {}
  std::size_t index() const { return mIndex; }
  const std::string& name() const override { return description().name; }
  const PropertyDictionary& properties() const override { return description().properties; }
  const UsbInterfaceDescription& description() const {
    return device()->description().interfaces.at(mIndex);
  }

 private:
  std::size_t mIndex;
};

class DeviceEntry : public RegistryEntry {
 public:
  using RegistryEntry::RegistryEntry;
  const std::string& name() const override { return device()->description().name; }
  const PropertyDictionary& properties() const override {
    return device()->description().properties;
  }
  // The entries of the device's interfaces, in descriptor order.
  std::vector<ObjectReference>& interfaces() { return mInterfaces; }

 private:
  std::vector<ObjectReference> mInterfaces;
};

class EntryIterator : public RegistryObject {
 public:
  void add(ObjectReference entry) { mEntries.push_back(std::move(entry)); }
  // A reference, or 0 at the end.
  virtual io_object_t next();

 private:
  std::deque<ObjectReference> mEntries;
};

}  // namespace platform
