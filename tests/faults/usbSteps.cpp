#include "usbSteps.h"

#include "DownloadLog.h"

namespace {

using enum Afterwards;

const Lines kUsbPrinterChosen{"5 Downloading firmware to USB printer: Veltra KX350T(VX0042)"};

}  // namespace

const std::vector<UsbStep>& usbSteps() {
  static const std::vector<UsbStep> all{
      {"while the first message is sent", "before the first message", "status-off",
       "writePipeAsyncTO", 200, kConnecting + kStatusOff, "before status-off",
       "in status-off at 17 of 34", Untouched},
      {"while the question for the device ID is sent", "after the first message", "id-request",
       "writePipeAsyncTO", 200, kRequest, "after status-off", "in id-request at 29 of 59",
       Untouched},
      {"while the response is awaited", "after the question for the device ID", nullptr,
       "readPipeAsyncTO", 20000, kAwaitResponse, "after id-request", "after id-request", Asked},
      {"while the device ID is awaited", "between the response and the device ID", nullptr,
       "readPipeAsyncTO", 20000, kAwaitingDeviceId, "after id-request", "after id-request", Asked},
      {"while the burn header is sent", "after the device ID", "burn-header", "writePipeAsyncTO",
       200, kDeviceIdHandled + kHeader, "after id-request", "in burn-header at 25 of 50", Asked},
      {"while the firmware is sent", "before the first byte of the firmware", "image",
       "writePipeAsyncTO", 200, kImage, "in image at 0 of 28", "in image at 14 of 28", Unfinished},
      {"while the end of the firmware is said", "after the firmware, before its end is said", "uel",
       "writePipeAsyncTO", 200, kUel, "after image", "in uel at 4 of 9", Unfinished},
      {"while the printer burns", "when the printer has everything", nullptr, "readPipeAsyncTO",
       3000, kAwaitBurn, "after uel", "after uel", Unannounced},
  };
  return all;
}

Lines packet(int bytes) {
  const std::string count = std::to_string(bytes);
  return {"7 SRB::handleReadCompletion " + count + " bytes added",
          "7 SRB::read requested " + count + "; copying " + count +
              "; 0 bytes left in short read buffer"};
}

Lines answered(std::size_t step) {
  if (step == 3) return packet(16);
  if (step == 4) return packet(36);
  return {};
}

Lines upTo(std::size_t step) {
  Lines log = kUsbPrinterChosen;
  for (std::size_t i = 1; i <= step; ++i) log = log + answered(i - 1) + usbSteps()[i - 1].begun;
  return log;
}
