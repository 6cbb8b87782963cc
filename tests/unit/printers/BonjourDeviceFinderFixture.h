// A finder with a real list view, on a network of announcements that a test makes.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "BonjourDeviceFinder.h"
#include "FakeServiceDiscovery.h"
#include "PrinterFixture.h"
#include "PrinterListView.h"

class BonjourDeviceFinderFixture : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;
  using Entries = std::vector<LogEntry>;
  using Announcement = FakeNetService::Announcement;

  BonjourDeviceFinderFixture() {
    platform::NibRef nib = platform::NibRef::None;
    doubles.toolkit.createNibReference(text("main"), nib);
    doubles.toolkit.createWindowFromNib(nib, text("PrinterSelectWindow"), window);
    view.emplace(window);
    finder.emplace(text("Veltra"), text("KX350T"), *view);
  }

  // Starts the finder, and forgets that it did.
  void start() {
    finder->start();
    services.script().takeCalls();
  }

  void run() { doubles.runLoop.runAllLater(); }

  static platform::Text text(const std::string& utf8) { return platform::Text::fromUtf8(utf8); }

  // A TXT record: each string behind its length.
  static platform::Data txt(const std::vector<std::string>& strings) {
    std::vector<std::uint8_t> bytes;
    for (const std::string& string : strings) {
      bytes.push_back(static_cast<std::uint8_t>(string.size()));
      bytes.insert(bytes.end(), string.begin(), string.end());
    }
    return platform::makeData(std::move(bytes));
  }

  static platform::Data address(std::uint8_t lastByte) {
    return platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2, lastByte, 0, 0, 0, 0, 0, 0, 0, 0});
  }

  using Addresses = std::vector<platform::Data>;
  static std::shared_ptr<const Addresses> addresses(Addresses records) {
    return std::make_shared<const Addresses>(std::move(records));
  }

  static Announcement printer(const std::string& name, std::uint8_t lastByte = 7) {
    Announcement announcement;
    announcement.name = name;
    announcement.txt = txt({"usb_MFG=Veltra", "usb_MDL=KX350T"});
    announcement.addresses = addresses({address(lastByte)});
    return announcement;
  }

  // The rows as the window shows them.
  Lines rows() {
    using namespace platform::literals;
    const FakeListControl& list = *doubles.screen().list("PrinterSelectWindow", {"lPrn"_4cc, 0});
    Lines shownRows;
    for (const platform::ItemId item : list.rows()) {
      shownRows.push_back(std::to_string(item) + " " + shown(list.cell(item, "lcNm"_4cc).text) +
                          " " + shown(list.cell(item, "lcTy"_4cc).text) + " " +
                          shown(list.cell(item, "lcId"_4cc).text));
    }
    return shownRows;
  }

  Lines takeCalls() { return services.script().takeCalls(); }
  Entries takeEntries() { return doubles.log.takeEntries(); }

  FakeServiceDiscovery services;
  DesktopDoubles doubles{nullptr, &services};
  platform::WindowRef window = platform::WindowRef::None;
  std::optional<PrinterListView> view;
  std::optional<BonjourDeviceFinder> finder;
};
