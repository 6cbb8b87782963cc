// Hears from the kernel that interfaces of USB devices have come or gone, as they do when a device
// is authorized late or gets another configuration; libusb tells of whole devices only. It says
// that something has changed, not what: whoever hears of it looks for himself, so that nothing is
// missed when the kernel has more to say than it keeps.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/RunLoop.h"

namespace platform {

class InterfaceChanges {
 public:
  // `changed` is called from the run loop, once for several changes close together. Where the
  // kernel has no such messages for this process, it never is.
  InterfaceChanges(RunLoop& runLoop, std::function<void()> changed);
  ~InterfaceChanges();
  InterfaceChanges(const InterfaceChanges&) = delete;
  InterfaceChanges& operator=(const InterfaceChanges&) = delete;

 private:
  void receive();

  std::function<void()> mChanged;
  int mSocket;
  std::unique_ptr<RunLoop::Watch> mWatch;
};

// Whether a message of the kernel's, "ACTION@PATH" and "KEY=VALUE" fields with a zero after each,
// tells of such a change.
bool isInterfaceChange(std::string_view message);

}  // namespace platform
