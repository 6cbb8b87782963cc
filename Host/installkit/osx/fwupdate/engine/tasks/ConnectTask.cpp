#include "ConnectTask.h"

#include "IoTransport.h"
#include "Log.h"

AsyncTaskResult ConnectTask::operator()() {
  Log<5>() << "Connecting to I/O transport..." << std::flush;
  mTransport.connect();
  return kTaskDone;
}
