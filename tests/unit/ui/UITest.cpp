#include <algorithm>

#include "FakeServiceDiscovery.h"
#include "FirmwareDownloader.h"
#include "IoKitException.h"
#include "UI.h"
#include "UiFixture.h"

namespace {

using namespace platform::literals;

constexpr platform::ControlId kList{"lPrn"_4cc, 0};

// One call for each part, which no other part makes.
const Lines kConstruction{
    "createNibReference(main)",
    "createWindowFromNib(main, PrinterSelectWindow)",
    "createWindowFromNib(main, ConfirmDownloadSheet)",
    "setDataBrowserSortProperty(PrinterSelectWindow/lPrn.0, lcNm)",
    "createWindowFromNib(main, ProgressSheet)",
    "setMenuBarFromNib(main, MenuBar)",
};

const Lines kDestruction{
    "setDataBrowserCallbacks(PrinterSelectWindow/lPrn.0, none)",
    "disposeWindow(PrinterSelectWindow)",
    "disposeNibReference(main)",
};

class UITest : public testing::Test {
 protected:
  UITest() { doubles.log.statuses().define(-50, "paramErr", "bad parameter"); }
  ~UITest() override { EXPECT_EQ(doubles.usb.problems(), Lines{}); }

  std::string failureOfConstruction() {
    try {
      const UI ui(downloader);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  }

  // Those calls so far that make the parts or take them down, in their order.
  Lines takePartCalls() {
    Lines calls = doubles.takeToolkitCalls();
    std::erase_if(calls, [](const std::string& call) {
      const auto isCall = [&](const std::string& other) { return call == other; };
      return std::ranges::none_of(kConstruction, isCall) &&
             std::ranges::none_of(kDestruction, isCall);
    });
    return calls;
  }

  bool isBrowsing() { return services.browsers() != 0; }

  CallScript& script() { return doubles.toolkit.script(); }

  FakeServiceDiscovery services;
  DesktopDoubles doubles{nullptr, &services};
  FirmwareDownloader downloader;
};

TEST_F(UITest, PartsAreBuiltInOrderAndTheWindowStaysHidden) {
  const UI ui(downloader);
  EXPECT_EQ(takePartCalls(), kConstruction);
  EXPECT_FALSE(doubles.screen().isVisible("PrinterSelectWindow"));
  EXPECT_TRUE(doubles.usb.matches().empty());
  EXPECT_FALSE(isBrowsing());
  EXPECT_EQ(doubles.log.entries(), Entries{});
}

TEST_F(UITest, PartsAreTornDownInReverse) {
  {
    const UI ui(downloader);
    doubles.takeToolkitCalls();
  }
  EXPECT_EQ(takePartCalls(), kDestruction);
  EXPECT_EQ(doubles.events.installedHandlers(), 0u);
}

TEST_F(UITest, MissingMenuBarThrowsAndTearsDown) {
  script().answerNext("setMenuBarFromNib", -50);
  EXPECT_EQ(failureOfConstruction(),
            "Failed to set menu bar from NIB. <status=-50 => paramErr; desc: bad parameter>");
  Lines expected = kConstruction;
  expected.insert(expected.end(), kDestruction.begin(), kDestruction.end());
  EXPECT_EQ(takePartCalls(), expected);
  EXPECT_EQ(doubles.events.installedHandlers(), 0u);
}

TEST_F(UITest, MissingPartThrows) {
  const std::string status = " <status=-50 => paramErr; desc: bad parameter>";
  script().answerNext("createNibReference", -50);
  EXPECT_EQ(failureOfConstruction(), "Failed to create NIB reference." + status);
  script().answerNext("createWindowFromNib", -50);
  EXPECT_EQ(failureOfConstruction(), "Failed to create window from NIB." + status);
  script().passNext("createWindowFromNib");
  script().answerNext("createWindowFromNib", -50);
  EXPECT_EQ(failureOfConstruction(), "Failed to create dialog sheet." + status);
  script().passNext("getControlById");
  script().answerNext("getControlById", -50);
  EXPECT_EQ(failureOfConstruction(), "Failed to get list control." + status);
}

TEST_F(UITest, MissingProgressSheetTearsDownWhatWasBuilt) {
  script().passNext("createWindowFromNib");
  script().passNext("createWindowFromNib");
  script().answerNext("createWindowFromNib", -50);
  EXPECT_EQ(failureOfConstruction(),
            "Failed to create dialog sheet. <status=-50 => paramErr; desc: bad parameter>");
  const Lines calls = takePartCalls();
  EXPECT_EQ(Lines(calls.end() - 3, calls.end()), kDestruction);
}

TEST_F(UITest, RunInstallsHandlersThenFindsPrintersThenRunsTheLoop) {
  UI ui(downloader);
  const std::size_t handlersBefore = doubles.events.installedHandlers();
  bool loopRan = false;
  doubles.events.whenIdle([&] {
    loopRan = true;
    EXPECT_EQ(doubles.events.installedHandlers(), handlersBefore + 4);
    EXPECT_EQ(doubles.usb.matches().size(), 1u);
    EXPECT_TRUE(isBrowsing());
    EXPECT_TRUE(doubles.screen().isVisible("PrinterSelectWindow"));
    return false;
  });
  ui.run();
  EXPECT_TRUE(loopRan);
}

TEST_F(UITest, UsbNoticesThatCannotBeHadLeaveRunBeforeTheNetworkIsBrowsed) {
  UI ui(downloader);
  doubles.usb.script("addMatchingNotification", platform::kIOReturnNoResources);
  EXPECT_THROW(ui.run(), IoKitException);
  EXPECT_FALSE(isBrowsing());
}

TEST_F(UITest, HandlerThatCannotBeInstalledLeavesRunBeforeAnythingIsFound) {
  UI ui(downloader);
  doubles.events.fail(FakeEvents::Operation::InstallAppleEventHandler, -50);
  EXPECT_THROW(ui.run(), std::runtime_error);
  EXPECT_TRUE(doubles.usb.matches().empty());
  EXPECT_FALSE(isBrowsing());
}

TEST_F(UITest, AttachedPrinterIsListedBeforeTheLoopRuns) {
  doubles.usb.attach(fakePrinter("VX0042"));
  UI ui(downloader);
  doubles.events.whenIdle([&] {
    const FakeListControl& list = *doubles.screen().list("PrinterSelectWindow", kList);
    EXPECT_EQ(list.rows(), std::vector<platform::ItemId>{1});
    EXPECT_EQ(list.cell(1, "lcId"_4cc).text.utf8(), "VX0042");
    return false;
  });
  ui.run();
}

TEST_F(UITest, QuitCommandEndsTheRunAndTheWindowIsGone) {
  UI ui(downloader);
  doubles.events.whenIdle([&] {
    EXPECT_TRUE(doubles.screen().isVisible("PrinterSelectWindow"));
    EXPECT_TRUE(doubles.screen().chooseMenuItem("quit"_4cc));
    return true;
  });
  ui.run();
  EXPECT_FALSE(doubles.screen().exists("PrinterSelectWindow"));
  EXPECT_EQ(doubles.log.entries(), Entries{});
}

TEST_F(UITest, ClosedWindowEndsTheRun) {
  UI ui(downloader);
  doubles.events.whenIdle([&] {
    EXPECT_TRUE(doubles.screen().closeWindow("PrinterSelectWindow"));
    return true;
  });
  ui.run();
  EXPECT_FALSE(doubles.screen().exists("PrinterSelectWindow"));
}

TEST_F(UITest, NoNoticeReachesAnythingAfterTheEnd) {
  const platform::io_service_t device = doubles.usb.attach(fakePrinter("VX0042"));
  {
    UI ui(downloader);
    ui.run();
  }
  doubles.log.takeEntries();
  doubles.usb.detach(device);
  FakeNetService::Announcement announcement;
  announcement.name = "Front desk";
  services.announce(announcement);
  doubles.runLoop.runAllLater();
  EXPECT_EQ(doubles.log.entries(), Entries{});
}

TEST_F(UITest, FailureToBrowseIsOnlyLogged) {
  services.script().answerNext("createBrowser", -1);
  UI ui(downloader);
  ui.run();
  EXPECT_EQ(doubles.log.entries(), (Entries{{3, "Failed to create Bonjour service browser."}}));
}

}  // namespace
