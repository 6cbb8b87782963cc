#include "networkSteps.h"

#include "DownloadLog.h"

namespace {

Lines behind(const Lines& whole, const Lines& begin) {
  return {whole.begin() + static_cast<std::ptrdiff_t>(begin.size()), whole.end()};
}

}  // namespace

const std::vector<NetworkStep>& networkSteps() {
  static const std::vector<NetworkStep> all{
      {"before Download is pressed", kStatusOffWritten},
      {"while the first message is sent", behind(kRequestWritten, kStatusOffWritten)},
      {"while the question for the device ID is sent", behind(kAwaitingResponse, kRequestWritten)},
      {"while the response is awaited", kAwaitingDeviceId},
      {"while the device ID is awaited", kHeaderWritten},
      {"while the burn header is sent", behind(kImageWritten, kHeaderWritten)},
      {"while the firmware is sent", behind(kUelWritten, kImageWritten)},
      {"while the end of the firmware is said", behind(kAwaitingBurn, kUelWritten)},
      {"while the printer burns", kBurned + kTransportGone}};
  return all;
}

Lines goodUpdate(std::size_t step, const Lines& inserted) {
  Lines log;
  for (std::size_t i = 0; i < networkSteps().size(); ++i) {
    if (i == step) log = log + inserted;
    log = log + networkSteps()[i].log;
  }
  return log;
}
