#include "DownloadEvents.h"

#include "FirmwareDownloader.h"

using namespace platform::literals;

namespace {

platform::OSStatus handle(platform::EventHandlerCallRef, const platform::Event& event, void*) {
  void* controller = nullptr;
  const platform::OSStatus status = event.getParameter("----"_4cc, controller);
  if (status != platform::noErr) return status;
  auto& downloader = *static_cast<FirmwareDownloader*>(controller);
  event.kind() == 1 ? downloader.resume() : downloader.stopTasks();
  return platform::noErr;
}

}  // namespace

void handleDownloadEvents(platform::Events& events) {
  const platform::EventSpec specs[] = {{"FwDl"_4cc, 1}, {"FwDl"_4cc, 2}};
  platform::EventHandlerRef installed = 0;
  events.installHandler(platform::kApplicationTarget, specs, handle, nullptr, installed);
}
