// The window side of the program without its finders, with handlers installed and the window open.
#pragma once

#include <string>

#include "CarbonEventHandler.h"
#include "ConfirmationSheet.h"
#include "FirmwareDownloader.h"
#include "NibWrapper.h"
#include "PrinterListView.h"
#include "ProgressSheet.h"
#include "QuillUsbDevice.h"
#include "UiFixture.h"
#include "WindowWrapper.h"

class CarbonEventHandlerFixture : public UiFixture {
 protected:
  static constexpr platform::ControlId kList{0x6C50726E, 0};  // 'lPrn'
  static constexpr platform::ControlId kOkButton{0, 2};
  static constexpr platform::ControlId kYesButton{0x62746E20, 1};  // 'btn '
  static constexpr platform::ControlId kNoButton{0x62746E20, 2};
  static constexpr platform::ControlId kCloseButton{0x62746E20, 1};

  // Handlers in the order of their installation; the first two are the list's.
  enum Handler { Commands = 2, WindowClose, ApplicationQuit, Downloader };

  CarbonEventHandlerFixture() {
    doubles.strings.define("NETWORK_PRINTER_CONFIRMATION", "Update?");
    handler.initialise();
    doubles.toolkit.showWindow(window.get());
    forget();
  }

  // What was done to windows and controls so far, in its order, without what was only asked.
  Lines takeToolkitChanges() {
    Lines calls = doubles.takeToolkitCalls();
    std::erase_if(calls, [](const std::string& call) { return call.starts_with("get"); });
    return calls;
  }

  // Forgets what the doubles have recorded so far.
  void forget() {
    doubles.takeToolkitCalls();
    doubles.events.takeCalls();
    doubles.events.takeCommands();
    doubles.log.takeEntries();
  }

  void addNetworkPrinter(const std::string& name = "Front desk") {
    listView.addBonjourPrinter(text(name), ipv4Record());
  }

  void addUsbPrinter() {
    QuillUsbDevice device;
    device.init(doubles.usb.attach(fakePrinter("VX0042")), 0);
    listView.addUsbPrinter(device);
  }

  void select(platform::ItemId item) {
    screen().select("PrinterSelectWindow", kList, item);
    forget();
  }

  platform::OSStatus command(platform::FourCharCode id) {
    platform::HICommand command;
    command.commandId = id;
    return doubles.events.processCommand(command);
  }

  const CatchingEvents::Caught& caught(Handler which) const {
    return doubles.events.handlers.at(which);
  }

  FirmwareDownloader downloader;
  NibWrapper nib;
  WindowWrapper window{text("PrinterSelectWindow"), nib};
  ConfirmationSheet confirmationSheet{nib.get(), window.get()};
  PrinterListView listView{window.get()};
  ProgressSheet progressSheet{nib.get(), window.get()};
  CarbonEventHandler handler{window.get(), listView, progressSheet, confirmationSheet, downloader};
};
