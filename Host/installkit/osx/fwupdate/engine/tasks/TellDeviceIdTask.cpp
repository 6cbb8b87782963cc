#include "TellDeviceIdTask.h"

AsyncTaskResult TellDeviceIdTask::operator()() {
  mKnown(mDeviceId);
  return kTaskDoneContinue;
}
