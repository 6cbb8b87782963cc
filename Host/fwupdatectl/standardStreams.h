// The three descriptors that every program has, or ought to have.
#pragma once

#include <functional>
#include <memory>

#include "platform/RunLoop.h"

// Puts nothing in the place of those that the program was started without. Whatever it opens
// afterwards would get their numbers, and with them the texts that are written there: the
// connection to a printer, too.
void completeStandardStreams();

// False when standard output did not take all that was written. That its reader has gone is his own
// affair, and nothing is said of it.
bool isOutputWritten();

// Calls back from the loop when the reader of standard output has gone. Null where that cannot be
// watched for: with anything but a pipe, only a write that fails tells it.
std::unique_ptr<platform::RunLoop::Watch> watchReader(platform::RunLoop& runLoop,
                                                      std::function<void()> gone);
