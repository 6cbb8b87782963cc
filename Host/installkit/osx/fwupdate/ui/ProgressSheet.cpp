#include "ProgressSheet.h"

#include <ostream>
#include <string>

#include "ErrorMessage.h"
#include "Log.h"
#include "platform/Assertion.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"

using namespace platform::literals;
using platform::Text;
using platform::WindowRef;

namespace {

constexpr const char* MessageTypeToWindowNameMap[] = {"FailedSheet", "UpToDateSheet"};

std::string printable(const Text& text) {
  return text ? std::string(text.utf8()) : std::string("(null)");
}

}  // namespace

ProgressSheet::ProgressSheet(platform::NibRef nib, WindowRef parent)
    : DialogSheet(Text::fromUtf8("ProgressSheet"), nib, parent, "tPNm"_4cc) {}

void ProgressSheet::setPrinterDetails(const Text& name, const Text& info) {
  setMsg(Text::fromUtf8(printable(name) + " (" + printable(info) + ")"));
}

void ProgressSheet::showAlertMessage(MessageType type) {
  platform::assertAt(mAlertSheet == WindowRef::None, "mAlertSheet == 0", "showAlertMessage",
                     "Host/installkit/osx/fwupdate/ProgressSheet", __LINE__);

  platform::Toolkit& toolkit = *platform::current().toolkit;
  const platform::OSStatus status = toolkit.createWindowFromNib(
      nib(), Text::fromUtf8(MessageTypeToWindowNameMap[type]), mAlertSheet);
  if (status == platform::noErr && mAlertSheet != WindowRef::None) {
    toolkit.showSheetWindow(mAlertSheet, sheet());
  } else {
    Log<3>() << buildErrorMessage("Failed to create FailedSheet window.", status) << std::flush;
  }
}

void ProgressSheet::removeAlertMessage() {
  platform::Toolkit& toolkit = *platform::current().toolkit;
  toolkit.hideSheetWindow(mAlertSheet);
  toolkit.disposeWindow(mAlertSheet);
  mAlertSheet = WindowRef::None;
}
