#include "WriteFirmwareTask.h"

#include "IoTransport.h"
#include "Log.h"

AsyncTaskResult WriteFirmwareTask::operator()() {
  Log<5>() << "Writing new firmware to printer..." << std::flush;
  mTransport.write(mImage.data(), mImage.size());
  return kTaskDone;
}
