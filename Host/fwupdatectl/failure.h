// What keeps a command from being done, said to whoever reads: a sentence on standard error for a
// person and, with --json, an object on standard output for a program.
#pragma once

#include <string>
#include <vector>

#include "Options.h"
#include "Target.h"

// Returns `status`, the exit status that the command ends with. `candidates` are the printers among
// which somebody has to choose; empty for any other failure.
int fail(Options::Output output, int status, const std::string& sentence,
         const std::vector<Target>& candidates = {});

// The same for programs alone, where a person knows already, or has been told.
int failForPrograms(Options::Output output, int status, const std::string& sentence,
                    const std::vector<Target>& candidates = {});

// A signal ended the command.
inline constexpr const char* kInterruption = "Interrupted.";

// The same where nothing more is said of it: whoever pressed Ctrl+C knows. The row in which a
// terminal shows these keys is ended.
int failByInterruption(Options::Output output);
