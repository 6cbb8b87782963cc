// Names the printer that is being updated, and carries the alert that tells how it ended: failed,
// or already up to date. The alert is a sheet of this sheet; there is one at a time.
#pragma once

#include "DialogSheet.h"

class ProgressSheet : public DialogSheet {
 public:
  enum MessageType { Failed = 0, UpToDate = 1 };

  ProgressSheet(platform::NibRef nib, platform::WindowRef parent);

  void setPrinterDetails(const platform::Text& name, const platform::Text& info);

  // A second alert beside the first is a fatal assertion. An alert that cannot be created is only
  // logged.
  void showAlertMessage(MessageType type);

  // Only after an alert was shown.
  void removeAlertMessage();

 private:
  platform::WindowRef mAlertSheet = platform::WindowRef::None;
};
