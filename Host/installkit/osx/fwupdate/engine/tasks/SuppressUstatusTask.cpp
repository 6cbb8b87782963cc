#include "SuppressUstatusTask.h"

#include "IoTransport.h"
#include "Log.h"

AsyncTaskResult SuppressUstatusTask::operator()() {
  Log<5>() << "Clearing unsolicited status updates..." << std::flush;
  mTransport.write(mUstatusOff.data(), mUstatusOff.size());
  return kTaskDone;
}
