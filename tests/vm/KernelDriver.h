// Whom the kernel has given a printer's interface to.
#pragma once

#include <string>

// The name of the driver; empty for none.
std::string kernelDriver(const std::string& serial = "VP000001");
