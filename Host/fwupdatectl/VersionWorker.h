// The process that asks one printer which version of the firmware it has, and writes nothing to it
// but the question. It says the answer on standard output, in a JSON line:
//   {"event":"version","version":100,"firmware":{"file":"product.brand.bin","version":200}}
// without "firmware" when there is no file for this printer, and {"event":"cause", ...} when
// something is wrong, with "in_use" where another program of this computer is at the printer. A
// malformed answer of the printer may end it by assertion.
#pragma once

#include "Target.h"

class ToolHost;

// The exit status of the process: 0 when the printer has answered.
int runVersionWorker(ToolHost& host, const Target& target);
