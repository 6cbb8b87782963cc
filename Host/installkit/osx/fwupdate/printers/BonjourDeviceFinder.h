// Finds printers on the local network by DNS-SD and brings them to the printer list view: it
// browses for raw-print services, resolves each one that appears, and keeps those whose TXT record
// names the wanted manufacturer and model. The application owns it, creates it after the view and
// destroys it before.
#pragma once

#include <memory>

#include "platform/ServiceDiscovery.h"
#include "platform/Text.h"

class PrinterListView;

class BonjourDeviceFinder {
 public:
  // Does not browse yet. `view` must outlive the finder.
  BonjourDeviceFinder(const platform::Text& manufacturer, const platform::Text& model,
                      PrinterListView& view);

  // Ends the browsing.
  ~BonjourDeviceFinder();
  BonjourDeviceFinder(const BonjourDeviceFinder&) = delete;
  BonjourDeviceFinder& operator=(const BonjourDeviceFinder&) = delete;

  // Starts to browse, for the rest of the finder's life. To be called once; a failure is logged.
  void start();

  // What the platform calls; `info` is the finder.
  static void serviceBrowseCallback(platform::NetServiceBrowser* browser, unsigned long flags,
                                    platform::NetService* domainOrService,
                                    platform::StreamError* error, void* info);
  static void serviceResolvedCallback(platform::NetService* service, platform::StreamError* error,
                                      void* info);

  // True when an event is to be dropped, which is logged.
  static bool checkForError(platform::StreamError* streamError, void* info,
                            platform::NetService* object);

 private:
  void handleServiceFound(unsigned long flags, platform::NetService* domainOrService);
  void addService(platform::NetService* service);
  void removeService(platform::NetService* service);
  void handleServiceResolved(platform::NetService* service);
  bool isWanted(const platform::Data& txtData) const;
  void addPrinter(platform::NetService* service);

  platform::Text mManufacturer;
  platform::Text mModel;
  PrinterListView& mView;
  std::unique_ptr<platform::NetServiceBrowser> mBrowser;
  platform::StreamError mStreamError;
};
