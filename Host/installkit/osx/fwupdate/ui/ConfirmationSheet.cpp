#include "ConfirmationSheet.h"

#include "platform/Bundle.h"
#include "platform/Platform.h"

using namespace platform::literals;

ConfirmationSheet::ConfirmationSheet(platform::NibRef nib, platform::WindowRef parent)
    : DialogSheet(platform::Text::fromUtf8("ConfirmDownloadSheet"), nib, parent, "tCnf"_4cc) {}

void ConfirmationSheet::setConfirmationMsg(const platform::Text& key) {
  setMsg(platform::current().strings->localizedString(key));
}
