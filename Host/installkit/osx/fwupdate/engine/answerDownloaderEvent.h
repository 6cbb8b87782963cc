// What a program does with the events of its download controller, whichever program it is.
#pragma once

#include "FirmwareDownloader.h"
#include "platform/Events.h"

// What to install a handler for, on the application's target.
inline constexpr platform::EventSpec kDownloaderEvents[] = {
    {kFwDlEventClass, kFwDlEventResume},
    {kFwDlEventClass, kFwDlEventAsyncFailure},
};

// Lets the controller that posted the event go on, or end its download. Not handled without a
// controller, or for an event of another kind.
platform::OSStatus answerDownloaderEvent(const platform::Event& event);
