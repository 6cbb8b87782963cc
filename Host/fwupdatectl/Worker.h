// The process of one download. It updates one printer and says on standard output what happens, in
// JSON lines; whoever started it watches that, and its end. A malformed answer of the printer may
// end it by assertion, which takes no other download along.
#pragma once

#include "Target.h"

class ToolHost;

// The exit status of the process: 0 when the printer has the firmware, 1 when it has not.
int runWorker(ToolHost& host, const Target& target);
