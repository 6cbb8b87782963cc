#include "Application.h"

#include "FirmwareDownloader.h"
#include "UI.h"
#include "loopbackAddress.h"
#include "platform/posix/PosixDeviceLocks.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"
#include "platform/posix/PosixStatusTable.h"
#include "runAndReport.h"

using namespace platform::literals;
using std::chrono::milliseconds;

namespace {

constexpr const char* kWindow = "PrinterSelectWindow";
constexpr platform::ControlId kList{"lPrn"_4cc, 0};
constexpr platform::ControlId kDownloadButton{0, 2};
constexpr platform::ControlId kFirstButton{"btn "_4cc, 1};

platform::Data record(const std::vector<std::string>& strings) {
  std::vector<std::uint8_t> bytes;
  for (const std::string& string : strings) {
    bytes.push_back(static_cast<std::uint8_t>(string.size()));
    bytes.insert(bytes.end(), string.begin(), string.end());
  }
  return platform::makeData(std::move(bytes));
}

}  // namespace

Application::Application(const std::string& resources, platform::Files* files,
                         const ApplicationParts& parts)
    : mFiles(platform::makePosixFiles()),
      mNetwork(platform::makePosixNetwork(mLoop)),
      mLocks(platform::makePosixDeviceLocks()),
      mHostUsb(parts.usb ? parts.usb(mLoop) : nullptr),
      mHostServices(parts.services ? parts.services(mServicesLoop) : nullptr),
      mPowerLock(parts.powerLock ? parts.powerLock(mServicesLoop) : nullptr),
      mToolkit([this](const platform::EventTarget& target, const platform::Event& event) {
        return mEvents.send(target, event);
      }),
      mLog(surfaces(files)),
      mStatuses(platform::makePosixStatusTable()),
      mWithStatuses(withStatuses()) {
  mBundle.setResourcesDirectory(resources);
  mStrings.define("NETWORK_PRINTER_CONFIRMATION", "Update?");
}

Application::~Application() = default;

platform::Platform Application::surfaces(platform::Files* files) {
  platform::Platform surfaces;
  surfaces.bundle = &mBundle;
  surfaces.strings = &mStrings;
  surfaces.files = files != nullptr ? files : mFiles.get();
  surfaces.runLoop = &mLoop;
  surfaces.events = &mEvents;
  surfaces.network = mNetwork.get();
  surfaces.services = &mServices;
  if (mHostServices) surfaces.services = mHostServices.get();
  surfaces.usb = &mUsb;
  mObservers.add(mUnended);
  if (mPowerLock) mObservers.add(*mPowerLock);
  if (mHostUsb) {
    surfaces.usb = mHostUsb.get();
    mObservers.add(*mHostUsb);
  }
  surfaces.toolkit = &mToolkit;
  surfaces.deviceLocks = mLocks.get();
  surfaces.downloadObserver = &mObservers;
  return surfaces;
}

platform::Platform Application::withStatuses() {
  platform::Platform surfaces = platform::current();
  surfaces.statuses = mStatuses.get();
  return surfaces;
}

int Application::run(const std::function<void()>& user) {
  mEvents.whenIdle([&] {
    settle();
    user();
    mEvents.processCommand({0, platform::kQuitCommand, 0, 0});
    return false;
  });
  const int status = runAndReport([] {
    FirmwareDownloader downloader;
    UI ui(downloader);
    ui.run();
  });
  mEvents.whenIdle({});
  mLoop.runAllLater();
  mServicesLoop.runAllLater();
  return status;
}

void Application::announce(const std::string& name, std::uint16_t port) {
  FakeNetService::Announcement announcement;
  announcement.name = name;
  announcement.txt = record({"usb_MFG=Veltra", "usb_MDL=KX350T"});
  announcement.addresses =
      std::make_shared<const std::vector<platform::Data>>(1, loopbackAddress(port));
  mServices.announce(std::move(announcement));
  settle();
}

void Application::announceSilent(const std::string& name) {
  FakeNetService::Announcement announcement;
  announcement.name = name;
  announcement.answers = false;
  mServices.announce(std::move(announcement));
  settle();
}

void Application::settle() {
  mAround([this] {
    do {
      mLoop.runAllLater();
      turnServices();
    } while (mEvents.deliverNext());
  });
}

void Application::turnServices() {
  mServicesLoop.runAllLater();
  mServicesLoop.pollDescriptors();
}

bool Application::select(unsigned row) {
  settle();
  const bool isSelected = mToolkit.screen().select(kWindow, kList, row);
  forgetRecords();
  return isSelected;
}

void Application::forgetRecords() {
  mStrings.forgetAskedFor();
  mLog.takeEntries();
  mEvents.takeCommands();
  mEvents.takeCalls();
  mServices.script().takeCalls();
  mToolkit.script().takeCalls();
  mUsb.takeCalls();
}

bool Application::pressDownload() { return mToolkit.screen().press(kWindow, kDownloadButton); }

bool Application::pressYes() {
  return mToolkit.screen().press("ConfirmDownloadSheet", kFirstButton);
}

bool Application::closeAlert() {
  for (const char* alert : {"FailedSheet", "UpToDateSheet"}) {
    if (mToolkit.screen().isVisible(alert)) {
      return mToolkit.screen().press(alert, kFirstButton);
    }
  }
  return false;
}

bool Application::chooseDownload() { return mToolkit.screen().chooseMenuItem("Down"_4cc); }

bool Application::chooseQuit() { return mToolkit.screen().chooseMenuItem(platform::kQuitCommand); }

bool Application::download() {
  bool isStarted = false;
  mAround([&] {
    isStarted =
        pressDownload() && (!mToolkit.screen().isVisible("ConfirmDownloadSheet") || pressYes());
  });
  return isStarted;
}

std::string Application::onScreen() {
  std::string seen;
  for (const char* name :
       {kWindow, "ConfirmDownloadSheet", "ProgressSheet", "FailedSheet", "UpToDateSheet"}) {
    if (!mToolkit.screen().isVisible(name)) continue;
    const bool blocked = mToolkit.screen().isBlocked(name);
    seen += (seen.empty() ? "" : " ") + (blocked ? "[" + std::string(name) + "]" : name);
  }
  return seen;
}

bool Application::runUntil(const std::function<bool()>& done) {
  return mLoop.runUntil([&] {
    turnServices();
    do {
      if (done()) return true;
    } while (mEvents.deliverNext());
    return false;
  });
}

void Application::pass(milliseconds time) {
  mLoop.advance(time);
  mServicesLoop.advance(time);
  settle();
}

bool Application::liveUntil(const std::function<bool()>& done, std::chrono::seconds atMost) {
  const milliseconds turn{10};
  const auto deadline = std::chrono::steady_clock::now() + atMost;
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    mLoop.pollDescriptors(mLoop.putOff() > 0 ? milliseconds(0) : turn);
    pass(turn);
  }
  return true;
}

std::string Application::outcome() const {
  for (const std::string& command : mEvents.commands()) {
    if (command == "DlOk" || command == "DlNo" || command == "DlUd") return command;
  }
  return "";
}

std::string Application::held() const {
  return std::to_string(mLoop.enabledWatches() + mServicesLoop.enabledWatches()) + " watches, " +
         std::to_string(mLoop.timers() + mServicesLoop.timers()) + " timers, " +
         std::to_string(mUnended.count()) + " updates";
}
