#include "WriteFirmwareTask.h"

#include "IoTransport.h"
#include "Log.h"
#include "platform/DownloadObserver.h"

AsyncTaskResult WriteFirmwareTask::operator()() {
  Log<5>() << "Writing new firmware to printer..." << std::flush;
  platform::downloadObserver().phaseBegan(platform::DownloadPhase::SendingFirmware, {});
  const auto handedOver = [total = mImage.size()](std::size_t count) {
    platform::downloadObserver().bytesHandedOver(count, total);
  };
  handedOver(0);
  mTransport.write(mImage.data(), mImage.size(), handedOver);
  return kTaskDone;
}
