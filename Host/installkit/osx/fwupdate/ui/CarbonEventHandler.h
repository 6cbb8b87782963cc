// Receives the commands of menus, buttons and the download controller, the end of the window and of
// the application, and the controller's own events, and drives the flow from the selection over the
// question and the download to its result. The UI owns it and everything that it refers to but the
// controller.
#pragma once

#include <span>

#include "platform/Events.h"

class ConfirmationSheet;
class FirmwareDownloader;
class PrinterListView;
class ProgressSheet;

class CarbonEventHandler {
 public:
  CarbonEventHandler(platform::WindowRef window, PrinterListView& printerListView,
                     ProgressSheet& progressSheet, ConfirmationSheet& confirmationSheet,
                     FirmwareDownloader& downloader);

  // Removes what is still installed.
  ~CarbonEventHandler();
  CarbonEventHandler(const CarbonEventHandler&) = delete;
  CarbonEventHandler& operator=(const CarbonEventHandler&) = delete;

  // Installs the handlers; std::runtime_error when one cannot be installed.
  void initialise();

 private:
  using Call = platform::EventHandlerCallRef;

  static platform::OSStatus openHandler(const platform::Event& event, platform::Event& reply,
                                        void* refCon);
  static platform::OSStatus commandHandler(Call call, const platform::Event& event, void* userData);
  static platform::OSStatus windowCloseHandler(Call call, const platform::Event& event,
                                               void* userData);
  static platform::OSStatus exitHandler(Call call, const platform::Event& event, void* userData);
  static platform::OSStatus resumeHandler(Call call, const platform::Event& event, void* userData);

  void installHandler(std::span<const platform::EventSpec> specs, platform::EventHandler handler,
                      const platform::EventTarget& target, platform::EventHandlerRef& installed);
  static void removeHandler(platform::EventHandlerRef& installed);

  platform::OSStatus handleOpen();
  void handleExit();
  platform::OSStatus handleCommand(const platform::HICommand& command);
  platform::OSStatus handleCmdDownload();
  platform::OSStatus handleCmdYes();
  platform::OSStatus handleCmdNo();
  platform::OSStatus handleCmdDownloadDone();
  platform::OSStatus handleCmdDownloadFailed();
  platform::OSStatus handleCmdDownloadUpToDate();
  platform::OSStatus handleCmdCloseAlert();
  platform::OSStatus handleCmdQuit();
  platform::OSStatus doDownload();

  platform::WindowRef mWindow;  // None once the window is disposed of at quit
  PrinterListView& mPrinterListView;
  ProgressSheet& mProgressSheet;
  ConfirmationSheet& mConfirmationSheet;
  FirmwareDownloader& mFirmwareDownloader;
  platform::EventHandlerRef mCommandHandler = 0;
  platform::EventHandlerRef mWindowCloseHandler = 0;
  platform::EventHandlerRef mExitHandler = 0;
  platform::EventHandlerRef mResumeHandler = 0;
};
