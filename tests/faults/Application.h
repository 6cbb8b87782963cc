// The whole program but for its pixels: the window, its sheets and its list as the toolkit double
// has them, both finders, the engine, and below it real sockets, files and locks. Time stands still
// until it is turned. A test is its user.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "FakeBundle.h"
#include "FakeEvents.h"
#include "FakeLocalizedStrings.h"
#include "FakeRunLoop.h"
#include "FakeServiceDiscovery.h"
#include "FakeToolkit.h"
#include "FakeUsbRegistry.h"
#include "LogRecorder.h"
#include "platform/DeviceLocks.h"
#include "platform/DownloadObserver.h"
#include "platform/Files.h"
#include "platform/Network.h"
#include "platform/Platform.h"
#include "platform/RunLoop.h"
#include "platform/ServiceDiscovery.h"
#include "platform/Status.h"
#include "platform/libusb/LibusbRegistry.h"

// Counts the updates that have begun and not ended, as an observer is told. Takes no memory.
class UnendedUpdates final : public platform::DownloadObserver {
 public:
  int count() const { return mCount; }

  void downloadBegan(const platform::Text&, const platform::Text&) noexcept override { ++mCount; }
  void phaseBegan(platform::DownloadPhase, std::chrono::milliseconds) noexcept override {}
  void versionsKnown(unsigned int, unsigned int) noexcept override {}
  void bytesHandedOver(std::size_t, std::size_t) noexcept override {}
  void errorLogged(const std::string&) noexcept override {}
  void downloadEnded(platform::DownloadOutcome) noexcept override { --mCount; }

 private:
  int mCount = 0;
};

// What takes the place of a double, made once there is a loop. Who finds printers and keeps the
// computer awake has one of its own, so that it can be waited for while an update stands still.
struct ApplicationParts {
  template <class Part>
  using Make = std::function<std::unique_ptr<Part>(platform::RunLoop& runLoop)>;

  Make<platform::LibusbRegistry> usb{};
  Make<platform::ServiceDiscovery> services{};
  Make<platform::DownloadObserver> powerLock{};
};

class Application {
 public:
  // The firmware files stand in `resources`. `files` takes the place of the real ones.
  explicit Application(const std::string& resources, platform::Files* files = nullptr,
                       const ApplicationParts& parts = {});
  ~Application();

  // Runs the program, and in its event loop `user`, after which it quits. Returns its exit status.
  int run(const std::function<void()>& user);

  // The printers that there are.
  void announce(const std::string& name, std::uint16_t port);
  void announceSilent(const std::string& name);  // one that tells nothing but its name
  void withdraw(const std::string& name) { mServices.withdraw(name); }
  FakeUsbRegistry& usb() { return mUsb; }

  FakeBundle& bundle() { return mBundle; }

  // What the user does. False when it cannot be done. Rows are numbered from 1, by their arrival.
  // Log and outcome are forgotten with the selection.
  bool select(unsigned row);
  bool pressDownload();
  bool pressYes();
  bool closeAlert();
  bool chooseDownload();  // from the menu
  bool chooseQuit();

  // Presses Download, and Yes if that is asked. False when that cannot be done.
  bool download();

  // What the user sees: the windows from the bottom up, "[PrinterSelectWindow] ProgressSheet".
  // Those in brackets take no input.
  std::string onScreen();

  // Everything that the program does from now on is done inside `around`, which calls what it is
  // given; what the test does is not.
  using Body = std::function<void()>;
  void setAround(std::function<void(const Body&)> around) { mAround = std::move(around); }

  // Lets the program do what there is to do at once.
  void settle();
  // Lets it do what there is to do until then, looking after each of its steps; false when it takes
  // too long.
  bool runUntil(const std::function<bool()>& done);
  // The same, of what `services` and `powerLock` do alone.
  bool waitUntil(const std::function<bool()>& done) { return mServicesLoop.runUntil(done); }
  // The same with time passing, as far as it says.
  void pass(std::chrono::milliseconds time);
  // The same with time passing, ten milliseconds of it for each look at what came from outside:
  // where the computer is slow, the program's time is, too.
  bool liveUntil(const std::function<bool()>& done,
                 std::chrono::seconds atMost = std::chrono::seconds(20));

  // "DlOk", "DlUd", "DlNo"; empty before there is one. Since the last selection.
  std::string outcome() const;

  // The log since the last selection, as "PRIORITY TEXT".
  std::vector<std::string> log() const { return mLog.lines(); }

  // What is held and must have been given back when an update is over, in words: watches of
  // descriptors, timers, and observers that were not told of an end.
  std::string held() const;

 private:
  platform::Platform surfaces(platform::Files* files);
  platform::Platform withStatuses();
  void turnServices();
  void forgetRecords();

  FakeBundle mBundle;
  FakeLocalizedStrings mStrings;
  FakeRunLoop mLoop;
  FakeRunLoop mServicesLoop;
  FakeEvents mEvents;
  std::unique_ptr<platform::Files> mFiles;
  std::unique_ptr<platform::Network> mNetwork;
  std::unique_ptr<platform::DeviceLocks> mLocks;
  FakeServiceDiscovery mServices;
  FakeUsbRegistry mUsb;
  std::unique_ptr<platform::LibusbRegistry> mHostUsb;
  std::unique_ptr<platform::ServiceDiscovery> mHostServices;
  std::unique_ptr<platform::DownloadObserver> mPowerLock;
  FakeToolkit mToolkit;
  UnendedUpdates mUnended;
  platform::DownloadObservers mObservers;
  LogRecorder mLog;
  std::unique_ptr<platform::StatusTable> mStatuses;
  platform::PlatformScope mWithStatuses;
  std::function<void(const Body&)> mAround = [](const Body& body) { body(); };
};
