#include "CarbonEventHandler.h"

#include <ostream>
#include <stdexcept>

#include "ConfirmationSheet.h"
#include "ErrorMessage.h"
#include "FirmwareDownloader.h"
#include "Log.h"
#include "Printer.h"
#include "PrinterListView.h"
#include "ProgressSheet.h"
#include "answerDownloaderEvent.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"
#include "startDownload.h"

using namespace platform::literals;
using platform::eventNotHandledErr;
using platform::noErr;
using platform::OSStatus;

CarbonEventHandler::CarbonEventHandler(platform::WindowRef window, PrinterListView& printerListView,
                                       ProgressSheet& progressSheet,
                                       ConfirmationSheet& confirmationSheet,
                                       FirmwareDownloader& downloader)
    : mWindow(window),
      mPrinterListView(printerListView),
      mProgressSheet(progressSheet),
      mConfirmationSheet(confirmationSheet),
      mFirmwareDownloader(downloader) {}

CarbonEventHandler::~CarbonEventHandler() { handleExit(); }

void CarbonEventHandler::initialise() {
  const OSStatus status = platform::current().events->installAppleEventHandler(
      platform::kOpenApplicationEvent.eventClass, platform::kOpenApplicationEvent.kind, openHandler,
      this);
  if (status != noErr) {
    throw std::runtime_error(buildErrorMessage("Failed to install open handler.", status));
  }

  const platform::EventSpec commands[] = {platform::kCommandEvent};
  const platform::EventSpec windowClose[] = {platform::kWindowCloseEvent};
  const platform::EventSpec applicationQuit[] = {platform::kApplicationQuitEvent};
  installHandler(commands, commandHandler, platform::kApplicationTarget, mCommandHandler);
  installHandler(windowClose, windowCloseHandler, mWindow, mWindowCloseHandler);
  installHandler(applicationQuit, exitHandler, platform::kApplicationTarget, mExitHandler);
  installHandler(kDownloaderEvents, resumeHandler, platform::kApplicationTarget, mResumeHandler);
}

void CarbonEventHandler::installHandler(std::span<const platform::EventSpec> specs,
                                        platform::EventHandler handler,
                                        const platform::EventTarget& target,
                                        platform::EventHandlerRef& installed) {
  const OSStatus status =
      platform::current().events->installHandler(target, specs, handler, this, installed);
  if (status != noErr) {
    throw std::runtime_error(buildErrorMessage("Failed to install event handler.", status));
  }
}

void CarbonEventHandler::removeHandler(platform::EventHandlerRef& installed) {
  if (installed == 0) return;
  platform::current().events->removeHandler(installed);
  installed = 0;
}

OSStatus CarbonEventHandler::openHandler(const platform::Event&, platform::Event&, void* refCon) {
  if (refCon == nullptr) return platform::errAEEventNotHandled;
  return static_cast<CarbonEventHandler*>(refCon)->handleOpen();
}

OSStatus CarbonEventHandler::commandHandler(Call, const platform::Event& event, void* userData) {
  if (userData == nullptr) return eventNotHandledErr;
  platform::HICommand command;
  if (event.getParameter(platform::kEventParamDirectObject, command) != noErr)
    return eventNotHandledErr;
  return static_cast<CarbonEventHandler*>(userData)->handleCommand(command);
}

OSStatus CarbonEventHandler::windowCloseHandler(Call, const platform::Event&, void*) {
  platform::current().events->quitApplicationEventLoop();
  return eventNotHandledErr;
}

OSStatus CarbonEventHandler::exitHandler(Call, const platform::Event&, void* userData) {
  if (userData != nullptr) static_cast<CarbonEventHandler*>(userData)->handleExit();
  return eventNotHandledErr;
}

OSStatus CarbonEventHandler::resumeHandler(Call, const platform::Event& event, void*) {
  return answerDownloaderEvent(event);
}

OSStatus CarbonEventHandler::handleOpen() {
  if (mWindow == platform::WindowRef::None) return platform::errAEEventNotHandled;
  platform::current().toolkit->showWindow(mWindow);
  return noErr;
}

void CarbonEventHandler::handleExit() {
  removeHandler(mCommandHandler);
  removeHandler(mWindowCloseHandler);
  removeHandler(mExitHandler);
  removeHandler(mResumeHandler);
}

OSStatus CarbonEventHandler::handleCommand(const platform::HICommand& command) {
  switch (command.commandId) {
    case "Down"_4cc:
      return handleCmdDownload();
    case "Yes "_4cc:
      return handleCmdYes();
    case "No  "_4cc:
      return handleCmdNo();
    case kDownloadSucceededCommand:
      return handleCmdDownloadDone();
    case kDownloadFailedCommand:
      return handleCmdDownloadFailed();
    case kUpToDateCommand:
      return handleCmdDownloadUpToDate();
    case "Clos"_4cc:
      return handleCmdCloseAlert();
    case platform::kQuitCommand:
      return handleCmdQuit();
    default:
      Log<5>() << "Unknown UI command: " << command.commandId << std::flush;
      return eventNotHandledErr;
  }
}

OSStatus CarbonEventHandler::handleCmdDownload() {
  try {
    const Printer* printer = mPrinterListView.getSelected();
    const platform::Text key = printer->getConfirmationMsgKey();
    if (key.isNull()) return doDownload();
    mConfirmationSheet.setConfirmationMsg(key);
    mConfirmationSheet.show();
  } catch (const std::out_of_range& error) {
    logDownloadFailure(error);
  }
  return noErr;
}

OSStatus CarbonEventHandler::handleCmdYes() {
  mConfirmationSheet.hide();
  return doDownload();
}

OSStatus CarbonEventHandler::handleCmdNo() {
  mConfirmationSheet.hide();
  return noErr;
}

OSStatus CarbonEventHandler::handleCmdDownloadDone() {
  mProgressSheet.hide();
  return noErr;
}

OSStatus CarbonEventHandler::handleCmdDownloadFailed() {
  mProgressSheet.showAlertMessage(ProgressSheet::Failed);
  return noErr;
}

OSStatus CarbonEventHandler::handleCmdDownloadUpToDate() {
  mProgressSheet.showAlertMessage(ProgressSheet::UpToDate);
  return noErr;
}

OSStatus CarbonEventHandler::handleCmdCloseAlert() {
  mProgressSheet.removeAlertMessage();
  mProgressSheet.hide();
  return noErr;
}

OSStatus CarbonEventHandler::handleCmdQuit() {
  if (mWindow != platform::WindowRef::None) {
    platform::current().toolkit->disposeWindow(mWindow);
    mWindow = platform::WindowRef::None;
  }
  return eventNotHandledErr;
}

OSStatus CarbonEventHandler::doDownload() {
  const bool isStarted = startDownload([this] {
    const Printer* printer = mPrinterListView.getSelected();
    mProgressSheet.setPrinterDetails(printer->getName(), printer->getInfo());
    printer->download(mFirmwareDownloader);
    mProgressSheet.show();
  });
  return isStarted ? noErr : eventNotHandledErr;
}
