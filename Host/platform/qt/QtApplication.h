// The application object of Qt, with everything that stands on it. main() makes one, as soon as
// there is a log, and keeps it until the end.
#pragma once

#include <memory>

namespace platform {

class Bundle;
class DownloadObserver;
class Events;
class LocalizedStrings;
class RunLoop;
class Toolkit;

class QtApplication {
 public:
  virtual ~QtApplication() = default;

  virtual RunLoop& runLoop() = 0;
  virtual Events& events() = 0;
  virtual Toolkit& toolkit() = 0;
  virtual LocalizedStrings& strings() = 0;

  // By which the windows know what to show of a download.
  virtual DownloadObserver& downloadObserver() = 0;
};

// Where there is no display, `reportNoDisplay` is called, if there is one, and the program ends at
// once with status 1. Translations and the icon come from the bundle's resources; without them the
// program runs in English. The program's arguments are its own: Qt gets `programName` alone.
// `bundle` must outlive the application.
std::unique_ptr<QtApplication> makeQtApplication(const char* programName, const Bundle& bundle,
                                                 void (*reportNoDisplay)() = nullptr);

}  // namespace platform
