#include "whenInWords.h"

#include <map>

std::string whenInWords(const std::string& step) {
  static const std::map<std::string, std::string> words{
      {"connect", "when the connection stands"},
      {"mid-status-off", "in the middle of the first message"},
      {"status-off", "after the first message"},
      {"mid-id-request", "in the middle of the question for the device ID"},
      {"id-request", "after the question for the device ID"},
      {"mid-id-response", "in the middle of the printer's response"},
      {"id-response", "between the response and the device ID"},
      {"mid-device-id", "in the middle of the device ID"},
      {"device-id", "after the device ID"},
      {"mid-burn-header", "in the middle of the burn header"},
      {"burn-header", "before the first byte of the firmware"},
      {"first-image-byte", "after the first byte of the firmware"},
      {"mid-image", "in the middle of the firmware"},
      {"last-image-byte", "before the last byte of the firmware"},
      {"image", "after the firmware, before its end is said"},
      {"mid-uel", "while its end is said"},
      {"uel", "when the printer has everything"},
      {"burned", "when it has burned, before it answers"},
      {"mid-burn-reply", "in the middle of its answer"},
      {"burn-reply", "after its answer"},
  };
  return words.at(step);
}
