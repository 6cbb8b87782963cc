// The three descriptors that every program has, or ought to have.
#pragma once

// Puts nothing in the place of those that the program was started without. Whatever it opens
// afterwards would get their numbers, and with them the texts that are written there: the
// connection to a printer, too.
void completeStandardStreams();

// False when standard output did not take all that was written. That its reader has gone is his own
// affair, and nothing is said of it.
bool isOutputWritten();
