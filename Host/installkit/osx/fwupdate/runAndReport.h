// What becomes of a failure that nothing else handles: an entry in the log and an exit status.
#pragma once

#include <functional>

// Runs the program: 0 when it returns; 1, with an entry that names the kind of failure, when it
// throws IoKitException, another std::runtime_error or std::bad_alloc. Anything else passes
// through.
int runAndReport(const std::function<void()>& program);
