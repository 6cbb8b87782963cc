// A printer on USB, by what names it to another process.
#pragma once

#include <optional>

#include "QuillUsbDevice.h"
#include "Target.h"
#include "platform/FailureCause.h"

// The attached printer of this name and serial number. None when it has left, or when another one
// that is attached has both, too: no firmware goes to one of two that cannot be told apart.
// `whyNot` says which it is. Needs the platform's USB registry.
std::optional<QuillUsbDevice> attachedDevice(const Target& printer, platform::FailureCause& whyNot);
