// Holds one counted reference to a registry object and releases it at the end of its scope, also
// when an exception ends it. For references that a function has only while it runs, or until what
// it makes takes them over.
#pragma once

#include "platform/Platform.h"
#include "platform/UsbRegistry.h"

class IoObjectHolder {
 public:
  // Takes the reference over; 0 is none.
  explicit IoObjectHolder(platform::io_object_t object) : mObject(object) {}
  ~IoObjectHolder() {
    if (mObject != 0) platform::current().usb->release(mObject);
  }
  IoObjectHolder(const IoObjectHolder&) = delete;
  IoObjectHolder& operator=(const IoObjectHolder&) = delete;

  platform::io_object_t get() const { return mObject; }

  // The reference has a new owner.
  void disown() { mObject = 0; }

 private:
  platform::io_object_t mObject;
};
