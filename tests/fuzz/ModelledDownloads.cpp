#include "ModelledDownloads.h"

#include <cstddef>

#include "DownloadEvents.h"
#include "PrinterMessages.h"

ModelledDownloads::ModelledDownloads() {
  mFiles.addDirectory("/resources");
  mFiles.addFile("/resources/product.brand.bin", kFirmware200);
  handleDownloadEvents(mEvents);
}

platform::Platform ModelledDownloads::surfaces() {
  platform::Platform platform;
  platform.bundle = &mBundle;
  platform.files = &mFiles;
  platform.runLoop = &mRunLoop;
  platform.events = &mEvents;
  platform.deviceLocks = &mLocks;
  platform.downloadObserver = &mObserver;
  return platform;
}

bool ModelledDownloads::takeTurn() {
  if (mModel.awaits() != Awaits::Turn) return true;
  if (mModel.nextTurnIsFatal()) return false;
  const std::size_t told = mEvents.commands().size();
  const bool isUnknown = mModel.nextTurnIsUnknown();
  require(mEvents.deliverNext());
  if (!isUnknown) {
    mModel.takeTurn();
  } else {
    const bool isOver = mEvents.commands().size() > told;
    mModel.takeUnknownTurn(isOver ? mEvents.commands().back() : "");
  }
  return true;
}

void ModelledDownloads::checkOutcomes() const {
  require(mEvents.commands() == mModel.commands());
  require(mEnds.size() == mModel.commands().size());
  if (isRunning() || mModel.commands().empty()) return;
  const std::string& command = mModel.commands().back();
  require(mEnds.back() == (command == "DlOk"   ? "ended Succeeded"
                           : command == "DlUd" ? "ended UpToDate"
                                               : "ended Failed"));
  require(mLocks.granted() == 0);
  require(mRunLoop.timers() == 0 && mRunLoop.putOff() == 0);
}

void ModelledDownloads::end() {
  mDownloader.reset();
  require(mLocks.granted() == 0);
  require(mEvents.commands() == mModel.commands());
  require(mEnds.size() == mModel.commands().size() + (isRunning() ? 1 : 0));
  require(!isRunning() || mEnds.back() == "ended Failed");
}
