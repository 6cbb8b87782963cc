// What happens now in a download (a DownloadProgress in an interface file, promoted from QWidget):
// its LiveLabel "phase" says it in words, its ProgressBar "progress" shows how far it is wherever
// an end is known, and its LiveLabel "advice" says what to do when the printer has been silent for
// longer than it should; before that, it says what it says in the file. Nothing runs here while no
// download does. Owned by its window.
#pragma once

#include <QTimer>
#include <QWidget>

#include "platform/qt/DownloadWatcher.h"

namespace platform {

class DownloadState;
class LiveLabel;
class ProgressBar;

class DownloadProgress : public QWidget, public DownloadWatcher {
 public:
  explicit DownloadProgress(QWidget* parent);

  void watch(const DownloadState& download) override;

  // Shows the state as it is by now.
  void refresh();

 private:
  void begin();
  void end();

  const DownloadState* mDownload = nullptr;
  LiveLabel* mVersions = nullptr;
  LiveLabel* mPhase = nullptr;
  ProgressBar* mBar = nullptr;
  LiveLabel* mAdvice = nullptr;
  QString mUsualAdvice;
  QTimer mTimer{this};
};

}  // namespace platform
