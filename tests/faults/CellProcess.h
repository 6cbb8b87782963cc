// A program that is to end itself, in a process of its own.
#pragma once

#include <functional>
#include <string>

#include "Application.h"
#include "Cell.h"

std::string joined(const Lines& lines);

// `update` selects a printer, calls what it is given, and goes on with the update. Fails the test
// unless the process then logs what the cell says, and aborts with its assertion. `seen` leaves out
// of the log what is a matter of time.
void expectAbort(
    const Cell& cell, const std::string& resources,
    const std::function<void(Application&, const std::function<void()>& begin)>& update,
    const std::function<Lines(const Lines&)>& seen);

std::size_t openDescriptors();

// What keeps the computer awake is a pipe that a program holds.
std::size_t openPipes();
