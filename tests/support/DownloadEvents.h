// What the application does with the events of the download controller, for tests that have the
// engine without the application.
#pragma once

#include "platform/Events.h"

// Installs a handler that resumes the controller in an event, or stops its tasks.
void handleDownloadEvents(platform::Events& events);
