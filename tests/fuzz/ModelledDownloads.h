// What two whole downloads have in common, by whatever way their bytes go: the parts of the program
// around them, the model that says what must come, and how each ends.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "DownloadModel.h"
#include "FakeBundle.h"
#include "FakeDeviceLocks.h"
#include "FakeEvents.h"
#include "FakeFiles.h"
#include "FakeRunLoop.h"
#include "FirmwareDownloader.h"
#include "PrinterTalk.h"
#include "RecordingObserver.h"
#include "platform/Platform.h"
#include "require.h"

class ModelledDownloads {
 public:
  ModelledDownloads(const ModelledDownloads&) = delete;
  ModelledDownloads& operator=(const ModelledDownloads&) = delete;

 protected:
  using Awaits = DownloadModel::Awaits;

  ModelledDownloads();
  ~ModelledDownloads() = default;

  // But for the network, or USB, which goes before what is here: so does the downloader then.
  platform::Platform surfaces();

  bool isRunning() const { return mModel.awaits() != Awaits::Nothing; }

  // The next event. False when the program would end by assertion.
  bool takeTurn();

  // Outcomes, each told once, and nothing of an ended download is left.
  void checkOutcomes() const;

  // The program ends now.
  void end();

  FakeBundle mBundle;
  FakeFiles mFiles;
  FakeRunLoop mRunLoop;
  FakeEvents mEvents;
  FakeDeviceLocks mLocks;
  PrinterTalk mTalk;
  DownloadModel mModel;
  std::unique_ptr<FirmwareDownloader> mDownloader = std::make_unique<FirmwareDownloader>();

 private:
  std::vector<std::string> mEnds;
  RecordingObserver mObserver{[this](const std::string& call) {
    if (call.starts_with("ended ")) mEnds.push_back(call);
  }};
};
