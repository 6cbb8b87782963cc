#include "checkUsb.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <system_error>

#include "Branding.h"
#include "legibleText.h"
#include "platform/libusb/DevicesReport.h"
#include "platform/libusb/InterfaceHolders.h"
#include "platform/libusb/SysfsAttribute.h"

using platform::InterfaceHolder;
using platform::ReportedUsbDevice;

namespace {

constexpr const char* kRule = "70-fwupdate.rules";
constexpr const char* kPrinterClass = "07";
constexpr const char* kPrinterDriver = "usblp";  // is asked for the printer, and gets it back
constexpr std::chrono::milliseconds kSearchForHolders{1000};

Finding checkRule(bool isRoot, const UsbPlaces& places) {
  Finding finding{true, "Right to use USB printers", {}, {}};
  for (const std::filesystem::path& each : places.rules) {
    std::error_code none;
    if (!std::filesystem::exists(each / kRule, none)) continue;
    finding.text = "The rule " + (each / kRule).string() + " gives it to whoever sits here.";
    return finding;
  }
  finding.isWell = isRoot;
  finding.text = std::string("The rule ") + kRule + " is not installed.";
  finding.nextStep = isRoot ? "You are root, who needs none."
                            : "Install the package fwupdate-common, or this file in "
                              "/etc/udev/rules.d.";
  return finding;
}

std::string holderName(const InterfaceHolder& holder) {
  if (holder.kind != InterfaceHolder::Kind::Program) return "another program";
  return holder.name + " (process " + std::to_string(holder.process) + ")";
}

// Who has the interface that a download uses; empty when a download can have it.
std::string holdersOf(const ReportedUsbDevice& device, const UsbPlaces& places) {
  for (const ReportedUsbDevice::Interface& each : device.interfaces) {
    if (each.usbClass != kPrinterClass || each.driver.empty() || each.driver == kPrinterDriver) {
      continue;
    }
    if (each.driver != platform::kUserSpaceDriver) return "the kernel driver " + each.driver;
    std::string names;
    for (const InterfaceHolder& holder : platform::findInterfaceHolders(
             each.directory, device.node.native(), kSearchForHolders, places.processes)) {
      names += (names.empty() ? "" : ", ") + holderName(holder);
    }
    return names;
  }
  return {};
}

bool hasPrinterInterface(const ReportedUsbDevice& device) {
  return std::ranges::any_of(device.interfaces,
                             [](const auto& each) { return each.usbClass == kPrinterClass; });
}

Finding checkPrinter(const ReportedUsbDevice& device, const UsbPlaces& places) {
  Finding finding{
      false, "USB printer " + legibleText(device.name + " (" + device.serial + ")"), {}, {}};
  if (device.mode.empty()) {
    finding.text = "It has no device node.";
    finding.nextStep = "Unplug the printer and plug it in again.";
  } else if (!device.mayBeOpened) {
    finding.text =
        "You are not permitted to open " + device.node.string() + " (mode " + device.mode + ").";
    finding.nextStep = "Unplug the printer and plug it in again, sit at this machine, or be root.";
  } else if (!hasPrinterInterface(device)) {
    finding.text = "It offers no connection for printing.";
    finding.nextStep = "Switch it off and on.";
  } else if (const std::string holders = holdersOf(device, places); !holders.empty()) {
    finding.text = "It is in use by " + holders + ".";
    finding.nextStep = "Close that, then try again.";
  } else {
    finding.isWell = true;
    finding.text = "You may open it, and nobody else uses it.";
  }
  return finding;
}

}  // namespace

Findings checkUsb(bool isRoot, const UsbPlaces& places) {
  Findings findings{checkRule(isRoot, places)};
  std::vector<ReportedUsbDevice> devices =
      platform::findUsbDevices(Branding::sUsbVendorId, places.devices, places.nodes);
  std::erase_if(devices, [](const ReportedUsbDevice& each) { return each.product != "0c28"; });
  for (const ReportedUsbDevice& each : devices) findings.push_back(checkPrinter(each, places));
  if (devices.empty()) findings.push_back({true, "USB printers", "None is attached.", {}});
  return findings;
}
