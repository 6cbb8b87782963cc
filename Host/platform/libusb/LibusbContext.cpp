#include "platform/libusb/LibusbContext.h"

#include <poll.h>
#include <signal.h>
#include <sys/time.h>

#include <utility>

#include "platform/libusb/LibusbResults.h"

namespace platform {
namespace {

constexpr timeval kAtOnce{0, 0};
constexpr timeval kShortTime{0, 100000};

LibusbDevice shareDevice(libusb_device* device) {
  return {libusb_ref_device(device), libusb_unref_device};
}

}  // namespace

std::shared_ptr<LibusbContext> LibusbContext::create(RunLoop& runLoop) {
  libusb_context* context = nullptr;
  // A thread that the library starts takes no signal: those are the program's.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  const int result = libusb_init(&context);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (result != LIBUSB_SUCCESS) return nullptr;
  return std::shared_ptr<LibusbContext>(new LibusbContext(runLoop, context));
}

LibusbContext::LibusbContext(RunLoop& runLoop, libusb_context* context)
    : mRunLoop(runLoop), mContext(context), mHearing(listen()) {}

IOReturn LibusbContext::listen() {
  const int result = libusb_hotplug_register_callback(
      mContext, LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED | LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT,
      LIBUSB_HOTPLUG_NO_FLAGS, LIBUSB_HOTPLUG_MATCH_ANY, LIBUSB_HOTPLUG_MATCH_ANY,
      LIBUSB_HOTPLUG_MATCH_ANY, plugged, this, nullptr);
  // Time-outs need no timer here: on Linux they come through one of the descriptors.
  libusb_set_pollfd_notifiers(mContext, descriptorAdded, descriptorRemoved, this);
  const libusb_pollfd** const present = libusb_get_pollfds(mContext);
  if (present == nullptr) return kIOReturnNoResources;
  for (const libusb_pollfd** each = present; *each != nullptr; ++each) {
    addDescriptor((*each)->fd, (*each)->events);
  }
  libusb_free_pollfds(present);
  return resultOfCall(result);
}

LibusbContext::~LibusbContext() {
  libusb_set_pollfd_notifiers(mContext, nullptr, nullptr, nullptr);
  mDescriptors.clear();
  mPlugEvents.clear();
  libusb_exit(mContext);
}

std::vector<LibusbDevice> LibusbContext::attachedDevices() const {
  std::vector<LibusbDevice> devices;
  libusb_device** list = nullptr;
  const ssize_t count = libusb_get_device_list(mContext, &list);
  for (ssize_t i = 0; i < count; ++i) devices.push_back(shareDevice(list[i]));
  if (list != nullptr) libusb_free_device_list(list, 1);
  return devices;
}

IOReturn LibusbContext::wrap(int node, libusb_device_handle*& handle) {
  return resultOfCall(libusb_wrap_sys_device(mContext, node, &handle));
}

void LibusbContext::announceAnew(const LibusbDevice& device) {
  notePlugEvent(device.get(), false);
  notePlugEvent(device.get(), true);
}

void LibusbContext::awaitEvents() {
  timeval time = kShortTime;
  libusb_handle_events_timeout_completed(mContext, &time, nullptr);
}

void LibusbContext::handleReadyEvents() {
  timeval time = kAtOnce;
  libusb_handle_events_timeout_completed(mContext, &time, nullptr);
}

void LibusbContext::addDescriptor(int descriptor, short events) {
  DescriptorWatch watch;
  const auto handle = [this] { handleReadyEvents(); };
  if ((events & POLLIN) != 0) {
    watch.readable = mRunLoop.watch(descriptor, RunLoop::Interest::Readable, handle);
  }
  if ((events & POLLOUT) != 0) {
    watch.writable = mRunLoop.watch(descriptor, RunLoop::Interest::Writable, handle);
  }
  mDescriptors[descriptor] = std::move(watch);
}

void LibusbContext::notePlugEvent(libusb_device* device, bool arrived) {
  mPlugEvents.push_back({shareDevice(device), arrived});
  if (mPlugEvents.size() > 1) return;
  mRunLoop.callLater([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->tellPlugEvents();
  });
}

void LibusbContext::tellPlugEvents() {
  const std::vector<PlugEvent> events = std::exchange(mPlugEvents, {});
  for (const PlugEvent& event : events) {
    if (mPlugHandler) mPlugHandler(event.device, event.arrived);
  }
}

void LibusbContext::descriptorAdded(int descriptor, short events, void* context) {
  static_cast<LibusbContext*>(context)->addDescriptor(descriptor, events);
}

void LibusbContext::descriptorRemoved(int descriptor, void* context) {
  static_cast<LibusbContext*>(context)->mDescriptors.erase(descriptor);
}

int LibusbContext::plugged(libusb_context*, libusb_device* device, libusb_hotplug_event event,
                           void* context) {
  static_cast<LibusbContext*>(context)->notePlugEvent(device,
                                                      event == LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED);
  return 0;
}

}  // namespace platform
