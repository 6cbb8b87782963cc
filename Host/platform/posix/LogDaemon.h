// The way to the host's log daemon: a datagram for each entry, in the form of syslog(3). That
// function waits for room in the daemon's queue, for ever when the daemon has stopped reading, and
// a printer in the middle of its firmware would wait with it. Here it has a second. Then entries
// are dropped, as where there is no daemon, until it reads again. Used by the system log.
#pragma once

#include "platform/posix/FileDescriptor.h"

namespace platform {

class LogDaemon {
 public:
  // Takes no memory, since an entry may say that it is exhausted.
  void send(int priority, const char* identity, const char* text);

  void disconnect() { mSocket = FileDescriptor(); }

 private:
  bool connect();

  FileDescriptor mSocket;
  bool mReads = false;  // has taken the last entry, or has not had one yet
};

}  // namespace platform
