// The desktop session and Qt's place in it, a line each, for a report to whoever helps.
#pragma once

#include <string>
#include <vector>

namespace platform {

std::string qtVersion();

// Needs the QApplication.
std::vector<std::string> describeDesktop();

}  // namespace platform
