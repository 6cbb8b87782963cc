#include "UsbDeviceFinder.h"

#include "Branding.h"
#include "Log.h"
#include "PrinterListView.h"

namespace {

void logDevice(const char* event, const QuillUsbDevice& device) {
  Log<5>() << event << device.getManufacturer() << " " << device.getProduct()
           << " device with serial number " << device.getSerialNum() << std::flush;
}

}  // namespace

UsbDeviceFinder::UsbDeviceFinder(PrinterListView& view)
    : QuillUsbDeviceFinderAsync(Branding::sUsbVendorId, Branding::sUsbProductId), mView(view) {}

void UsbDeviceFinder::notifyDeviceFound(QuillUsbDevice& device) {
  logDevice("Found ", device);
  mView.addUsbPrinter(device);
}

void UsbDeviceFinder::notifyDeviceRemoved(QuillUsbDevice& device) {
  logDevice("Removed ", device);
  mView.removeUsbPrinter(device);
}
