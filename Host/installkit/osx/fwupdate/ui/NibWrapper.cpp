#include "NibWrapper.h"

#include <stdexcept>

#include "ErrorMessage.h"
#include "platform/Platform.h"
#include "platform/Toolkit.h"

NibWrapper::NibWrapper() {
  const platform::OSStatus status =
      platform::current().toolkit->createNibReference(platform::Text::fromUtf8("main"), mNib);
  if (status != platform::noErr) {
    throw std::runtime_error(buildErrorMessage("Failed to create NIB reference.", status));
  }
  if (mNib == platform::NibRef::None) throw std::runtime_error("NIB reference is null.");
}

NibWrapper::~NibWrapper() { platform::current().toolkit->disposeNibReference(mNib); }
