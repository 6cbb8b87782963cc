#include "WaitForFirmwareBurnResponseTask.h"

#include <chrono>
#include <cstdint>

#include "IoTransport.h"
#include "Log.h"
#include "platform/DownloadObserver.h"

AsyncTaskResult WaitForFirmwareBurnResponseTask::operator()() {
  Log<5>() << "New firmware sent to printer, waiting for the printer to burn it to flash and send "
              "response."
           << std::flush;
  const std::uint32_t timeout = (static_cast<std::uint32_t>(mImage.size()) / 65536 + 1) * 3000;
  Log<5>() << "This will take some time; using a timeout of " << std::dec << timeout << "ms."
           << std::flush;
  platform::downloadObserver().phaseBegan(platform::DownloadPhase::BurningFirmware,
                                          std::chrono::milliseconds(timeout));
  mResponse = AclResponse();
  mTransport.read(&mResponse, sizeof mResponse, timeout);
  return kTaskDone;
}
