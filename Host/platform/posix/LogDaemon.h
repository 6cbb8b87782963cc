// The way to the host's log daemon: a datagram for each entry, in the form of syslog(3). That
// function waits for a daemon that has stopped reading, and a printer in the middle of its firmware
// would wait with it; here such an entry is dropped, as where there is no daemon. Used by the
// system log.
#pragma once

#include "platform/posix/FileDescriptor.h"

namespace platform {

class LogDaemon {
 public:
  // Never waits, and takes no memory, since an entry may say that it is exhausted.
  void send(int priority, const char* identity, const char* text);

  void disconnect() { mSocket = FileDescriptor(); }

 private:
  bool connect();

  FileDescriptor mSocket;
};

}  // namespace platform
