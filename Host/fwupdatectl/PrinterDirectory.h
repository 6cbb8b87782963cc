// The printers that can be reached right now: those that the product's list would show in a window,
// kept up to date by its two finders while the loop runs.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "BonjourDeviceFinder.h"
#include "PrinterListView.h"
#include "Target.h"
#include "UsbDeviceFinder.h"
#include "platform/headless/HeadlessToolkit.h"

class ToolHost;

class PrinterDirectory final : private platform::HeadlessToolkit::Listener {
 public:
  enum class Change { Added, Removed };
  using Changed = std::function<void(Change change, const Target& printer)>;

  // Starts to look. `changed` comes from the loop. Throws what the product's finders throw.
  PrinterDirectory(ToolHost& host, Changed changed);
  ~PrinterDirectory() override;

  // By name, then by address or serial number.
  std::vector<Target> printers() const;

 private:
  void rowAdded(platform::ItemId item) override;
  void rowRemoved(platform::ItemId item) override;

  Target targetOf(platform::ItemId item) const;

  Changed mChanged;
  std::map<platform::ItemId, Target> mPrinters;
  platform::HeadlessToolkit mToolkit{*this};
  PrinterListView mView;
  UsbDeviceFinder mUsbDeviceFinder;
  BonjourDeviceFinder mBonjourDeviceFinder;
};
