#include "StartFirmwareDownloadTask.h"

#include <cstdint>

#include "CalcCheckSum.h"
#include "FirmwareLoader.h"
#include "IoTransport.h"
#include "Log.h"
#include "platform/DownloadObserver.h"

AsyncTaskResult StartFirmwareDownloadTask::operator()() {
  Log<5>() << "Choosing and loading a firmware file..." << std::flush;
  platform::DownloadObserver& observer = platform::downloadObserver();
  observer.phaseBegan(platform::DownloadPhase::ChoosingFirmware, {});
  unsigned int fileVersion = 0;
  const unsigned int printerVersion = extractVersionFromIeee1284Id(mDeviceId);
  if (!getFirmware(mDeviceId, mImage, fileVersion)) {
    Log<3>() << "Failed to load firmware file." << std::flush;
    return kDownloadFailed;
  }
  observer.versionsKnown(printerVersion, fileVersion);
  if (printerVersion < fileVersion) {
    sendFirmwareBurnCmdHeader();
    return kTaskDone;
  }
  Log<5>() << "Firmware on the printer is already up-to-date." << std::flush;
  return kDownloadUpToDate;
}

void StartFirmwareDownloadTask::sendFirmwareBurnCmdHeader() {
  FirmwareBurnParameters parameters;
  parameters.mLength = static_cast<std::uint32_t>(mImage.size());
  parameters.mCheckSum =
      CalcCheckSum(reinterpret_cast<const unsigned short*>(mImage.data()), mImage.size());
  mHeader.setCommand(kAclCommandFirmwareBurn);
  mHeader.setParameters(parameters);
  mTransport.write(&mHeader, sizeof mHeader);
}
