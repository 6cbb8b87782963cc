#include "SuppressUstatusTask.h"

#include "IoTransport.h"
#include "Log.h"
#include "platform/DownloadObserver.h"

AsyncTaskResult SuppressUstatusTask::operator()() {
  Log<5>() << "Clearing unsolicited status updates..." << std::flush;
  platform::downloadObserver().phaseBegan(platform::DownloadPhase::AskingForVersion, {});
  mTransport.write(mUstatusOff.data(), mUstatusOff.size());
  return kTaskDone;
}
