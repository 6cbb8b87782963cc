#include "platform/libusb/RegistryObjects.h"

namespace platform {

io_object_t ObjectTable::add(std::shared_ptr<RegistryObject> object) {
  do {
    ++mLastNumber;
  } while (mLastNumber == 0 || mObjects.contains(mLastNumber));
  mObjects.emplace(mLastNumber, Counted{std::move(object), 1});
  return mLastNumber;
}

void ObjectTable::retain(io_object_t number) {
  const auto found = mObjects.find(number);
  if (found != mObjects.end()) ++found->second.references;
}

void ObjectTable::release(io_object_t number) {
  const auto found = mObjects.find(number);
  if (found == mObjects.end() || --found->second.references > 0) return;
  // The object may release others as it goes; it is out of the table by then.
  const std::shared_ptr<RegistryObject> last = std::move(found->second.object);
  mObjects.erase(found);
}

io_object_t EntryIterator::next() {
  if (mEntries.empty()) return 0;
  const io_object_t number = mEntries.front().take();
  mEntries.pop_front();
  return number;
}

}  // namespace platform
