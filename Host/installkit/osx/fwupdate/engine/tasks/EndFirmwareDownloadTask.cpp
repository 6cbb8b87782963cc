#include "EndFirmwareDownloadTask.h"

#include "IoTransport.h"
#include "Log.h"
#include "Pjl.h"

AsyncTaskResult EndFirmwareDownloadTask::operator()() {
  Log<5>() << "Finalising the firmware download..." << std::flush;
  mTransport.write(kUel.data(), kUel.size());
  return kTaskDone;
}
