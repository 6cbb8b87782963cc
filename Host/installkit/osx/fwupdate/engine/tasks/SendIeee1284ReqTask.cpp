#include "SendIeee1284ReqTask.h"

#include "IoTransport.h"
#include "Log.h"

AsyncTaskResult SendIeee1284ReqTask::operator()() {
  Log<5>() << "Requesting IEEE 1284 device ID from the printer..." << std::flush;
  mRequest.setCommand(kAclCommandIeee1284DeviceId);
  mTransport.write(&mRequest, sizeof mRequest);
  return kTaskDone;
}
