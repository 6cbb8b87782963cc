#include "DownloadFixture.h"

#include <chrono>
#include <fstream>
#include <utility>

#include "NetworkTransport.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"

using namespace std::chrono_literals;
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

std::string firmware200() {
  return {
      "FIRMWARE"
      "ABC\0"
      "00000200XYZ\0"
      "Q\0"
      "\x03\x12",
      28};
}

std::vector<std::string> printerOptions(const std::vector<std::string>& faults) {
  std::vector<std::string> options{"--device-id",      "MDL:KX350T;LIC:QT725013;FWVER:100;",
                                   "--burn-seconds",   "0.03",
                                   "--return-seconds", "0.1"};
  for (const std::string& fault : faults) options.insert(options.end(), {"--fault", fault});
  return options;
}

platform::Data loopbackAddress(std::uint16_t port) {
  return platform::makeData({16, 2, static_cast<std::uint8_t>(port >> 8),
                             static_cast<std::uint8_t>(port), 127, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0,
                             0});
}

DownloadFixture::DownloadFixture()
    : mFiles(platform::makePosixFiles()),
      mNetwork(platform::makePosixNetwork(mLoop)),
      mLog(surfaces()) {
  mBundle.setResourcesDirectory(mResources.path());
  const platform::EventSpec specs[] = {{kFwDlEventClass, kFwDlEventResume},
                                       {kFwDlEventClass, kFwDlEventAsyncFailure}};
  platform::EventHandlerRef installed = 0;
  mEvents.installHandler(platform::kApplicationTarget, specs, handleDownloadEvent, nullptr,
                         installed);
  mEvents.takeCalls();
  installFirmware("product.brand.bin", firmware200());
  mDownloader.emplace();
}

DownloadFixture::~DownloadFixture() = default;

platform::Platform DownloadFixture::surfaces() {
  platform::Platform platform;
  platform.events = &mEvents;
  platform.files = mFiles.get();
  platform.bundle = &mBundle;
  platform.network = mNetwork.get();
  platform.runLoop = &mLoop;
  return platform;
}

void DownloadFixture::startPrinter(const std::vector<std::string>& faults,
                                   const std::vector<std::string>& options) {
  std::vector<std::string> arguments = printerOptions(faults);
  arguments.insert(arguments.end(), options.begin(), options.end());
  mPrinter = std::make_unique<VirtualPrinterProcess>(arguments);
}

void DownloadFixture::installFirmware(const std::string& name, const std::string& image) {
  std::ofstream(mResources.path() / name, std::ios::binary) << image;
}

void DownloadFixture::download() {
  downloadFirmwareThroughNetwork(loopbackAddress(mPrinter->port()), *mDownloader);
}

void DownloadFixture::runUntilLogged(const std::string& text) {
  const bool logged = mLoop.runUntil([&] {
    mEvents.deliverAll();
    return !mLog.entries().empty() && mLog.entries().back().text == text;
  });
  ASSERT_TRUE(logged) << testing::PrintToString(log());
}

void DownloadFixture::runUntilOutcome() {
  const bool ended = mLoop.runUntil([&] {
    mEvents.deliverAll();
    return !mEvents.calls().empty() && mEvents.calls().back().starts_with("command ");
  });
  ASSERT_TRUE(ended) << testing::PrintToString(log());
}

void DownloadFixture::holdUntilPrinter(const std::string& event, const std::string& text) {
  runUntilLogged(text);
  mPrinter->waitFor(event);
}

void DownloadFixture::expectStillWaiting() {
  mLoop.runUntil(
      [&] {
        mEvents.deliverAll();
        return false;
      },
      150ms);
  EXPECT_THAT(takeEvents(), testing::Each(testing::StartsWith("FwDl")));
  mDownloader.reset();
}

std::vector<std::string> DownloadFixture::log() const {
  std::vector<std::string> lines;
  for (const LogEntry& entry : mLog.entries()) {
    lines.push_back(std::to_string(entry.priority) + " " + entry.text);
  }
  return lines;
}

std::vector<std::string> DownloadFixture::takeEvents() {
  std::vector<std::string> events;
  for (const std::string& call : mEvents.takeCalls()) {
    if (call.starts_with("post ")) events.push_back(call.substr(5));
    if (call.starts_with("command ")) events.push_back(call.substr(8));
  }
  return events;
}
