// The mounted FunctionFS of the gadget: its control endpoint, where the host's configuration and
// the requests of the printer class arrive, and the files of the other endpoints. Owned by the
// gadget; unmounted at the end.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "EventLoop.h"
#include "FileDescriptor.h"
#include "UsbDescriptors.h"

namespace virtualprinter {

class FunctionFs {
 public:
  // What the host does to the function. Called from the event loop.
  struct Handlers {
    std::function<void()> enabled;   // configured, or configured anew
    std::function<void()> disabled;  // unplugged, or not configured any more
    // The device ID for the printer class's own request, without its length.
    std::function<std::string()> deviceId;
  };

  // `function` is the name of the function in configfs. Throws std::runtime_error.
  FunctionFs(EventLoop& loop, const std::string& function, const UsbDescriptors& descriptors,
             Handlers handlers);
  ~FunctionFs();
  FunctionFs(const FunctionFs&) = delete;
  FunctionFs& operator=(const FunctionFs&) = delete;

  // Never blocks when it is read or written. Throws std::runtime_error.
  FileDescriptor open(const std::string& endpoint) const;

 private:
  struct Setup;

  void mount(const std::string& function);
  void readEvents();
  void answer(const Setup& setup);

  Handlers mHandlers;
  std::filesystem::path mDirectory;
  FileDescriptor mControl;
  std::unique_ptr<EventLoop::Watch> mWatch;
};

}  // namespace virtualprinter
