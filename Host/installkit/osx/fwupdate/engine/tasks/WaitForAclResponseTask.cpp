#include "WaitForAclResponseTask.h"

#include "IoTransport.h"
#include "Log.h"

AsyncTaskResult WaitForAclResponseTask::operator()() {
  Log<5>() << "IEEE 1284 device ID request sent to printer, waiting for response..." << std::flush;
  mResponse = AclResponse();
  mTransport.read(&mResponse, sizeof mResponse);
  return kTaskDone;
}
