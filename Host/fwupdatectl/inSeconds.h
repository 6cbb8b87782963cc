// A time, in words.
#pragma once

#include <chrono>
#include <string>

// "10 s", "0.5 s".
std::string inSeconds(std::chrono::milliseconds time);
