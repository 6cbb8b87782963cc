// A widget that shows something of a download (a promoted one in an interface file): the toolkit
// hands it the state when its window is made.
#pragma once

namespace platform {

class DownloadState;

class DownloadWatcher {
 public:
  virtual ~DownloadWatcher() = default;

  // Called once. The state outlives the widget; a download may run, or have ended, by then.
  virtual void watch(const DownloadState& download) = 0;
};

}  // namespace platform
