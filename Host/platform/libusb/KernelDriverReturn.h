// Lets the kernel's driver have an interface again, without waiting for it: a printer's driver asks
// the printer first who it is, and waits for seconds where it does not answer. So a thread does it,
// with one call to the kernel and a descriptor of its own; it touches nothing else of the program,
// and goes on when this object is gone. Should the program end before the call is made, its end
// makes it. Where there is no descriptor or no thread to be had, the call is made at once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/RunLoop.h"

namespace platform {

class KernelDriverReturn {
 public:
  // `node` is a descriptor of usbfs, of which a copy is taken; nobody has claimed the interface.
  // `ended` is called from the run loop, whether the driver has the interface by then or not.
  KernelDriverReturn(RunLoop& runLoop, int node, std::uint8_t interface,
                     std::function<void()> ended);
  ~KernelDriverReturn();
  KernelDriverReturn(const KernelDriverReturn&) = delete;
  KernelDriverReturn& operator=(const KernelDriverReturn&) = delete;

 private:
  int mEnd = -1;  // readable when the thread has ended
  std::unique_ptr<RunLoop::Watch> mWatch;
  std::unique_ptr<RunLoop::Timer> mTold;  // where there is no such descriptor
};

}  // namespace platform
