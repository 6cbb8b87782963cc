#include "ReadIeee1284DataTask.h"

#include "IoTransport.h"
#include "Log.h"
#include "platform/Assertion.h"

AsyncTaskResult ReadIeee1284DataTask::operator()() {
  const unsigned short expectLen = mResponse.getIeee1284ResponseLen();
  platform::assertAt(expectLen > 0, "expectLen > 0", "operator()",
                     "Host/installkit/osx/fwupdate/AsyncTaskQueue", 443);
  Log<5>() << "Reading IEEE 1284 device ID..." << std::flush;
  mData.resize(expectLen);
  mTransport.read(mData.data(), mData.size());
  return kTaskDone;
}
