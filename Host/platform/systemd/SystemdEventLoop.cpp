#include "platform/systemd/SystemdEventLoop.h"

#include <systemd/sd-event.h>

#include <cstdint>

#include "platform/systemd/checkSystemd.h"

namespace platform {

void SystemdEventLoop::Unref::operator()(sd_event* event) const { sd_event_unref(event); }

SystemdEventLoop::SystemdEventLoop() {
  sd_event* made = nullptr;
  checkSystemd(sd_event_new(&made), "Unable to make an event loop");
  mEvent.reset(made);
}

void SystemdEventLoop::run() {
  while (!mQuit) checkSystemd(sd_event_run(mEvent.get(), UINT64_MAX), "Unable to wait for events");
  mQuit = false;
  if (const auto exception = std::exchange(mException, nullptr)) std::rethrow_exception(exception);
}

void SystemdEventLoop::endWith(std::exception_ptr exception) noexcept {
  if (mException == nullptr) mException = std::move(exception);
  quit();
}

}  // namespace platform
