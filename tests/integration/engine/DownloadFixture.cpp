#include "DownloadFixture.h"

#include <chrono>
#include <fstream>

using namespace std::chrono_literals;

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

DownloadFixture::DownloadFixture() {
  mBundle.setResourcesDirectory(mResources.path());
  installFirmware("product.brand.bin", firmware200());
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

void DownloadFixture::download() { startDownload(mPrinter->port()); }

void DownloadFixture::runUntilLogged(const std::string& text) {
  const bool logged =
      runUntil([&] { return !mLog.entries().empty() && mLog.entries().back().text == text; });
  ASSERT_TRUE(logged) << testing::PrintToString(log());
}

void DownloadFixture::runUntilOutcome() {
  ASSERT_TRUE(runUntil([this] { return hasOutcome(); })) << testing::PrintToString(log());
}

void DownloadFixture::holdUntilPrinter(const std::string& event, const std::string& text) {
  runUntilLogged(text);
  mPrinter->waitFor(event);
}

void DownloadFixture::expectStillWaiting() {
  runUntil([] { return false; }, 150ms);
  EXPECT_THAT(takeEvents(), testing::Each(testing::StartsWith("FwDl")));
  mDownloader.reset();
}

std::vector<std::string> DownloadFixture::takeEvents() {
  std::vector<std::string> events;
  for (const std::string& call : mEvents.takeCalls()) {
    if (call.starts_with("post ")) events.push_back(call.substr(5));
    if (call.starts_with("command ")) events.push_back(call.substr(8));
  }
  return events;
}
