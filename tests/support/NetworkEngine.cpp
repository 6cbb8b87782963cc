#include "NetworkEngine.h"

#include "DownloadEvents.h"
#include "NetworkTransport.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"

platform::Data loopbackAddress(std::uint16_t port) {
  return platform::makeData({16, 2, static_cast<std::uint8_t>(port >> 8),
                             static_cast<std::uint8_t>(port), 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,
                             0});
}

NetworkEngine::NetworkEngine()
    : mFiles(platform::makePosixFiles()),
      mNetwork(platform::makePosixNetwork(mLoop)),
      mLog(surfaces()) {
  handleDownloadEvents(mEvents);
  mEvents.takeCalls();
  mDownloader.emplace();
}

NetworkEngine::~NetworkEngine() = default;

platform::Platform NetworkEngine::surfaces() {
  platform::Platform platform;
  platform.events = &mEvents;
  platform.files = mFiles.get();
  platform.bundle = &mBundle;
  platform.network = mNetwork.get();
  platform.runLoop = &mLoop;
  return platform;
}

void NetworkEngine::startDownload(std::uint16_t port) {
  downloadFirmwareThroughNetwork(loopbackAddress(port), *mDownloader);
}

bool NetworkEngine::runUntil(const std::function<bool()>& done, std::chrono::milliseconds atMost) {
  return mLoop.runUntil(
      [&] {
        mEvents.deliverAll();
        return done();
      },
      atMost);
}

bool NetworkEngine::hasOutcome() const {
  return !mEvents.calls().empty() && mEvents.calls().back().starts_with("command ");
}
