// What is the same in every update of a network cell, whoever runs it: how the program is held
// where the cell says, and how the update ends.
#pragma once

#include "Application.h"
#include "NetworkCells.h"
#include "VirtualPrinterProcess.h"

// Keeps the program where it is until the printer has done what it does wrong.
void holdUntilFault(const NetworkCell& cell, Application& application,
                    VirtualPrinterProcess& printer);

// Up to the outcome that the cell says, and the alert that goes with it, which the user closes.
void expectEnd(const NetworkCell& cell, Application& application);

// Up to the last line that there will be, and then for ten minutes of the program's own time. The
// user quits.
void quitWhileWaiting(const NetworkCell& cell, Application& application);

// What of a log is the same each time.
Lines seenLog(const NetworkCell& cell, const Lines& log);
