#include "DialogSheet.h"

#include <stdexcept>

#include "ErrorMessage.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"

DialogSheet::DialogSheet(const platform::Text& windowName, platform::NibRef nib,
                         platform::WindowRef parent, platform::FourCharCode msgControlSignature)
    : mNib(nib), mParent(parent) {
  platform::Toolkit& toolkit = *platform::current().toolkit;
  platform::OSStatus status = toolkit.createWindowFromNib(mNib, windowName, mSheet);
  if (status == platform::noErr && msgControlSignature != 0) {
    status = toolkit.getControlById(mSheet, {msgControlSignature, 0}, mMsgControl);
  }
  if (status != platform::noErr) {
    throw std::runtime_error(buildErrorMessage("Failed to create dialog sheet.", status));
  }
}

DialogSheet::~DialogSheet() = default;

void DialogSheet::show() { platform::current().toolkit->showSheetWindow(mSheet, mParent); }

void DialogSheet::hide() { platform::current().toolkit->hideSheetWindow(mSheet); }

void DialogSheet::setMsg(const platform::Text& text) {
  if (mMsgControl == platform::ControlRef::None) return;
  platform::current().toolkit->setControlText(mMsgControl, text);
}
