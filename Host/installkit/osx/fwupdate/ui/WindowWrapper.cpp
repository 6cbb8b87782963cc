#include "WindowWrapper.h"

#include <stdexcept>

#include "ErrorMessage.h"
#include "NibWrapper.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"

WindowWrapper::WindowWrapper(const platform::Text& name, NibWrapper& nib) {
  const platform::OSStatus status =
      platform::current().toolkit->createWindowFromNib(nib.get(), name, mWindow);
  if (status != platform::noErr) {
    throw std::runtime_error(buildErrorMessage("Failed to create window from NIB.", status));
  }
  if (mWindow == platform::WindowRef::None) {
    throw std::runtime_error("Window reference is null.");
  }
}

WindowWrapper::~WindowWrapper() { platform::current().toolkit->disposeWindow(mWindow); }
