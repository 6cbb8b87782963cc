#include "ConnectTask.h"

#include "IoTransport.h"
#include "Log.h"
#include "platform/DownloadObserver.h"

AsyncTaskResult ConnectTask::operator()() {
  Log<5>() << "Connecting to I/O transport..." << std::flush;
  platform::downloadObserver().phaseBegan(platform::DownloadPhase::Connecting, {});
  mTransport.connect();
  return kTaskDone;
}
