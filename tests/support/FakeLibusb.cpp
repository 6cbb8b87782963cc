#include "FakeLibusb.h"

#include <signal.h>

#include <algorithm>

namespace {

FakeLibusb* current = nullptr;

}  // namespace

FakeLibusb::FakeLibusb() { current = this; }
FakeLibusb::~FakeLibusb() { current = nullptr; }

int LIBUSB_CALL libusb_init(libusb_context**) {
  sigset_t blocked;
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  current->threadsTakeSignals = sigismember(&blocked, SIGINT) == 0;
  return current->initResult;
}
void LIBUSB_CALL libusb_exit(libusb_context*) {}

int LIBUSB_CALL libusb_hotplug_register_callback(libusb_context*, int, int, int, int, int,
                                                 libusb_hotplug_callback_fn, void*,
                                                 libusb_hotplug_callback_handle*) {
  return current->hotplugResult;
}

void LIBUSB_CALL libusb_set_pollfd_notifiers(libusb_context*, libusb_pollfd_added_cb,
                                             libusb_pollfd_removed_cb, void*) {}

const libusb_pollfd** LIBUSB_CALL libusb_get_pollfds(libusb_context*) {
  static const libusb_pollfd* none[] = {nullptr};
  return current->hasPollfds ? none : nullptr;
}

void LIBUSB_CALL libusb_free_pollfds(const libusb_pollfd**) {}

ssize_t LIBUSB_CALL libusb_get_device_list(libusb_context*, libusb_device*** list) {
  *list = nullptr;
  return 0;
}

std::uint8_t LIBUSB_CALL libusb_get_bus_number(libusb_device* device) { return device->bus; }
std::uint8_t LIBUSB_CALL libusb_get_device_address(libusb_device* device) {
  return device->address;
}

int LIBUSB_CALL libusb_get_port_numbers(libusb_device* dev, std::uint8_t* port_numbers, int len) {
  if (dev->ports.size() > static_cast<std::size_t>(len)) return LIBUSB_ERROR_OVERFLOW;
  std::copy(dev->ports.begin(), dev->ports.end(), port_numbers);
  return static_cast<int>(dev->ports.size());
}

int LIBUSB_CALL libusb_get_device_descriptor(libusb_device* device,
                                             libusb_device_descriptor* descriptor) {
  *descriptor = device->descriptor;
  return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_get_active_config_descriptor(libusb_device* dev,
                                                    libusb_config_descriptor** config) {
  if (dev->activeResult == LIBUSB_SUCCESS) *config = &dev->active;
  return dev->activeResult;
}

void LIBUSB_CALL libusb_free_config_descriptor(libusb_config_descriptor*) {}
