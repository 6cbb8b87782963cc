#include "HandleFirmwareBurnResponseTask.h"

#include "Log.h"
#include "PjlAclRequestHeader.h"

AsyncTaskResult HandleFirmwareBurnResponseTask::operator()() {
  if (mResponse.responseIsValid(kAclCommandFirmwareBurn)) {
    Log<5>() << "Firmware download is complete, the printer will restart." << std::flush;
    return kDownloadSucceeded;
  }
  Log<3>() << "The firmware download failed on the printer." << std::flush;
  return kDownloadFailed;
}
