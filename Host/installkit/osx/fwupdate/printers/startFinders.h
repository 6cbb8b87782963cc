// Whatever finds printers for a program, started in one order.
#pragma once

class BonjourDeviceFinder;
class UsbDeviceFinder;

// To be called once. A failure on the network is logged; what the finder on USB throws passes
// through.
void startFinders(UsbDeviceFinder& usb, BonjourDeviceFinder& network);
