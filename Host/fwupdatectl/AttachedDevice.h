// A printer on USB, by what names it to another process.
#pragma once

#include <optional>
#include <string>

#include "QuillUsbDevice.h"
#include "platform/FailureCause.h"

// The first attached printer with this serial number; none when it has left. Needs the platform's
// USB registry.
std::optional<QuillUsbDevice> attachedDevice(const std::string& serial);

// What to say of one that has left.
platform::FailureCause causeOfAbsence();
