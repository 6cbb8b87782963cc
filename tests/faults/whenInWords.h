// The points of an update at which the virtual printer can strike, as the document calls them.
#pragma once

#include <string>

// Throws std::out_of_range when there is no such step.
std::string whenInWords(const std::string& step);
