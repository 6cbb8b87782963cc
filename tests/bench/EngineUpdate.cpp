#include "EngineUpdate.h"

#include <stdexcept>

#include "NetworkTransport.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"

namespace bench {
namespace {

using namespace platform::literals;

platform::OSStatus handleDownloadEvent(platform::EventHandlerCallRef, const platform::Event& event,
                                       void*) {
  void* controller = nullptr;
  if (event.getParameter("----"_4cc, controller) != platform::noErr) {
    return platform::eventNotHandledErr;
  }
  if (event.kind() == kFwDlEventResume) static_cast<FirmwareDownloader*>(controller)->resume();
  if (event.kind() == kFwDlEventAsyncFailure) {
    static_cast<FirmwareDownloader*>(controller)->stopTasks();
  }
  return platform::noErr;
}

platform::Data loopbackAddress(std::uint16_t port) {
  return platform::makeData({16, 2, static_cast<std::uint8_t>(port >> 8),
                             static_cast<std::uint8_t>(port), 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,
                             0});
}

}  // namespace

EngineUpdate::EngineUpdate(const std::filesystem::path& resources)
    : mFiles(platform::makePosixFiles()),
      mNetwork(platform::makePosixNetwork(mLoop)),
      mLog(surfaces()) {
  mBundle.setResourcesDirectory(resources);
  const platform::EventSpec specs[] = {{kFwDlEventClass, kFwDlEventResume},
                                       {kFwDlEventClass, kFwDlEventAsyncFailure}};
  platform::EventHandlerRef installed = 0;
  mEvents.installHandler(platform::kApplicationTarget, specs, handleDownloadEvent, nullptr,
                         installed);
  mDownloader.emplace();
}

EngineUpdate::~EngineUpdate() = default;

void EngineUpdate::run(std::uint16_t port) {
  downloadFirmwareThroughNetwork(loopbackAddress(port), *mDownloader);
  const bool ended = mLoop.runUntil([&] {
    mEvents.deliverAll();
    return mEvents.calls().back().starts_with("command ");
  });
  if (!ended || mEvents.calls().back() != "command DlOk") {
    const std::string last = mLog.entries().empty() ? "" : mLog.entries().back().text;
    throw std::runtime_error("the update failed: " + last);
  }
}

platform::Platform EngineUpdate::surfaces() {
  platform::Platform platform;
  platform.events = &mEvents;
  platform.files = mFiles.get();
  platform.bundle = &mBundle;
  platform.network = mNetwork.get();
  platform.runLoop = &mLoop;
  return platform;
}

}  // namespace bench
