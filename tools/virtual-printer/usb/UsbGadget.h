// The printer on a USB cable: a gadget with the printer interface, over which the conversations go,
// and the vendor's interface, which says back what it hears. Plugged in while the printer is there.
// Needs root and a USB device controller, which dummy_hcd provides in software.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "AsyncIo.h"
#include "Attachment.h"
#include "FunctionFs.h"
#include "GadgetDirectory.h"
#include "Printer.h"
#include "UsbConnection.h"
#include "UsbDescriptors.h"
#include "UsbPipes.h"

namespace virtualprinter {

class UsbGadget final : public Attachment {
 public:
  // `controller` names the device controller; empty takes any free one. The faults of the printer
  // give the shape of the interfaces. Throws std::runtime_error where there are no gadgets.
  UsbGadget(Printer& printer, EventLoop& loop, const UsbIdentity& identity,
            const std::string& controller);
  ~UsbGadget() override;

  void arrive() override;
  void leave() override;

 private:
  void enabled();
  void disabled();
  void plugIn();
  void unplug(std::optional<std::chrono::milliseconds> back);

  Printer& mPrinter;
  EventLoop& mLoop;
  UsbIdentity mIdentity;
  std::string mController;
  bool mPlugged = false;

  // In this order: each needs the ones before it until its end.
  GadgetDirectory mDirectory;
  UsbDescriptors mDescriptors;
  FunctionFs mFunction;
  AsyncIo mIo;
  std::unique_ptr<UsbPipes> mPrinterPipes;
  std::unique_ptr<UsbPipes> mVendorPipes;
  std::unique_ptr<UsbConnection> mConnection;
  std::unique_ptr<Scheduler::Timer> mPlugTimer;
};

}  // namespace virtualprinter
