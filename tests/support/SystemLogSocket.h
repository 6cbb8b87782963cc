// The place of the host's log daemon, for a process that has a /dev of its own.
#pragma once

#include <optional>
#include <string>

#include "platform/posix/FileDescriptor.h"

// Puts a /dev of this process alone over the host's, with nothing in it but /dev/log, and gives the
// socket that listens there; none where the user may have no name spaces.
platform::FileDescriptor takeLogDaemonsPlace();

// Does so once more, as a daemon does that is started anew.
platform::FileDescriptor listenAsLogDaemon();

// The entry that arrived first, "<11>fwupdate: text", without its time; nothing when none waits.
std::optional<std::string> receiveLogEntry(const platform::FileDescriptor& daemon);
