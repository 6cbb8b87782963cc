// A virtual printer on USB, run as a process of its own and watched through its journal. Ends with
// the object, and is unplugged by that.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "TemporaryDirectory.h"

class UsbPrinterProcess {
 public:
  // Starts virtual-printer --usb with further options.
  explicit UsbPrinterProcess(const std::vector<std::string>& options = {});
  ~UsbPrinterProcess();
  UsbPrinterProcess(const UsbPrinterProcess&) = delete;
  UsbPrinterProcess& operator=(const UsbPrinterProcess&) = delete;

  // Asks it to end, waits for that, and returns its exit status.
  int stop();

  void signal(int number);

  // What the journal says so far.
  std::vector<nlohmann::json> journal() const;
  std::size_t count(const std::string& event) const;

  // The last entry of that kind; null when there is none.
  nlohmann::json last(const std::string& event) const;

  // What the host sent, message after message.
  std::vector<std::string> receivedMessages() const;

 private:
  TemporaryDirectory mDirectory;
  std::string mJournal;
  pid_t mProcess = -1;
};
