// How many files this process may have open. Each download needs some, and hundreds of them more
// than a login gives. Processes that are started meanwhile get what this one was given.
#pragma once

#include <sys/types.h>

#include <cstddef>

// Takes as many as the host allows at all. Says how many downloads at a time they are enough for.
std::size_t allowManyOpenFiles();

// `process` gets the limit that there was before.
void giveBackOpenFiles(pid_t process);
