// A main window with its list, and a view on it when a test wants one.
#pragma once

#include <optional>

#include "PrinterFixture.h"
#include "PrinterListView.h"

inline constexpr platform::ControlId kListId{0x6C50726E, 0};  // 'lPrn'
inline constexpr const char* kMainWindow = "PrinterSelectWindow";

class PrinterListViewFixture : public PrinterFixture {
 protected:
  PrinterListViewFixture() {
    doubles.log.statuses().define(-50, "paramErr", "bad parameter");
    platform::NibRef nib = platform::NibRef::None;
    doubles.toolkit.createNibReference(text("main"), nib);
    doubles.toolkit.createWindowFromNib(nib, text(kMainWindow), window);
    doubles.toolkit.showWindow(window);
    control = doubles.screen().control(kMainWindow, kListId);
    doubles.takeToolkitCalls();
  }

  void makeView() {
    view.emplace(window);
    doubles.takeToolkitCalls();
    doubles.events.takeCalls();
  }

  void add(const std::string& name, const platform::Data& address = nullptr) {
    view->addBonjourPrinter(text(name), address);
  }

  FakeListControl& list() { return *doubles.screen().list(kMainWindow, kListId); }

  std::vector<LogEntry> takeEntries() { return doubles.log.takeEntries(); }

  platform::WindowRef window = platform::WindowRef::None;
  platform::ControlRef control = platform::ControlRef::None;
  std::optional<PrinterListView> view;
};
