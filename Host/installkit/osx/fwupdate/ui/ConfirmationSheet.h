// The question before a download, answered with the commands 'Yes ' and 'No  '.
#pragma once

#include "DialogSheet.h"

class ConfirmationSheet : public DialogSheet {
 public:
  ConfirmationSheet(platform::NibRef nib, platform::WindowRef parent);

  // Shows the text for `key` in the user's language, or the key itself where there is none.
  void setConfirmationMsg(const platform::Text& key);
};
