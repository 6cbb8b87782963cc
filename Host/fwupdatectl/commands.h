// What the tool can do, each until its exit status.
#pragma once

#include "Options.h"

class ToolHost;

int listPrinters(ToolHost& host, const Options& options);
int updatePrinters(ToolHost& host, const Options& options);
int checkMachine(ToolHost& host, const Options& options);
int showFirmware(const Options& options);
