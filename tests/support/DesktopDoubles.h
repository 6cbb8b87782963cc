// The doubles that the window side of the program stands on, installed as the platform for their
// own lifetime. A fixture holds them first, so that what it tests is gone before them.
#pragma once

#include <string>
#include <vector>

#include "CatchingEvents.h"
#include "FakeBundle.h"
#include "FakeFiles.h"
#include "FakeLocalizedStrings.h"
#include "FakeNetwork.h"
#include "FakeRunLoop.h"
#include "FakeToolkit.h"
#include "FakeUsbRegistry.h"
#include "LogRecorder.h"

struct DesktopDoubles {
  explicit DesktopDoubles(platform::Network* otherNetwork = nullptr,
                          platform::ServiceDiscovery* services = nullptr)
      : log({.bundle = &bundle,
             .strings = &strings,
             .files = &files,
             .runLoop = &runLoop,
             .events = &events,
             .network = otherNetwork != nullptr ? otherNetwork : &network,
             .services = services,
             .usb = &usb,
             .toolkit = &toolkit}) {}

  FakeScreen& screen() { return toolkit.screen(); }
  std::vector<std::string> takeToolkitCalls() { return toolkit.script().takeCalls(); }

  FakeBundle bundle;
  FakeLocalizedStrings strings;
  FakeFiles files;
  FakeRunLoop runLoop;
  CatchingEvents events;
  FakeNetwork network;
  FakeUsbRegistry usb;
  FakeToolkit toolkit{[this](const platform::EventTarget& target, const platform::Event& event) {
    return events.send(target, event);
  }};
  LogRecorder log;
};
