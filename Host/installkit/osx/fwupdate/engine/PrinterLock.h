// The lock of the printer that a transport is about to talk to. Where another program of this
// computer asks the printer for its version, the end of that is waited for, as long as it may take
// with a printer that is well.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/Data.h"
#include "platform/DeviceLocks.h"
#include "platform/RunLoop.h"

class PrinterLock {
 public:
  // Throws std::runtime_error when another program updates the printer.
  PrinterLock(const platform::Data& address, platform::DeviceUse use);

  // Whether nobody else talks to the printer, or is known to.
  bool isGranted();

  // Calls back from the loop, once: when it is granted, or when that has taken too long, which it
  // logs. The object may be destroyed from there, and nothing is called after its destruction.
  void await(std::function<void(bool isGranted)> over);

 private:
  void askAgain();

  std::unique_ptr<platform::DeviceLock> mLock;  // null where nobody is kept out
  std::string mHolder;                          // who talks to the printer while it is not granted
  std::chrono::milliseconds mLeft;              // of the time to wait
  std::function<void(bool)> mOver;
  std::unique_ptr<platform::RunLoop::Timer> mTimer;
};
