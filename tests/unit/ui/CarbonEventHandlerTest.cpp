// Installing and removing handlers, and the events that are not commands.
#include <optional>

#include "CarbonEventHandler.h"
#include "CarbonEventHandlerFixture.h"

namespace {

using namespace platform::literals;
using platform::Event;

class CarbonEventHandlerTest : public CarbonEventHandlerFixture {
 protected:
  Event downloaderEvent(std::uint32_t kind, FirmwareDownloader* sender) {
    Event event("FwDl"_4cc, kind);
    event.setParameter("----"_4cc, static_cast<void*>(sender));
    return event;
  }

  // Starts a download that waits for its connection.
  void startDownload() {
    addNetworkPrinter();
    select(1);
    command("Yes "_4cc);
    forget();
  }
};

class CarbonEventHandlerInstallationTest : public CarbonEventHandlerTest {
 protected:
  CarbonEventHandlerInstallationTest() {
    other.emplace(window.get(), listView, progressSheet, confirmationSheet, downloader);
  }

  std::optional<CarbonEventHandler> other;
};

TEST_F(CarbonEventHandlerInstallationTest, InstallsItsHandlersInOrder) {
  other->initialise();
  const std::string target =
      " on window " + std::to_string(static_cast<std::uint64_t>(window.get()));
  EXPECT_EQ(doubles.events.takeCalls(),
            (Lines{"installAppleEvent aevt oapp", "install cmds 1", "install wind 72" + target,
                   "install appl 3", "install FwDl 1, FwDl 2"}));
  for (std::size_t i = 6; i < 10; ++i) EXPECT_EQ(doubles.events.handlers[i].userData, &*other);
}

TEST_F(CarbonEventHandlerInstallationTest, FailedOpenHandlerThrows) {
  const std::size_t before = doubles.events.installedHandlers();
  doubles.events.fail(FakeEvents::Operation::InstallAppleEventHandler, -50);
  expectRuntimeError(withStatus("Failed to install open handler."), [&] { other->initialise(); });
  EXPECT_EQ(doubles.events.installedHandlers(), before);
}

TEST_F(CarbonEventHandlerInstallationTest, AnyOtherFailedHandlerThrows) {
  for (int successes = 0; successes < 4; ++successes) {
    other.emplace(window.get(), listView, progressSheet, confirmationSheet, downloader);
    doubles.events.fail(FakeEvents::Operation::InstallHandler, -50, successes);
    expectRuntimeError(withStatus("Failed to install event handler."),
                       [&] { other->initialise(); });
  }
}

TEST_F(CarbonEventHandlerInstallationTest, DestroyedHandlerRemovesWhatWasInstalled) {
  const std::size_t before = doubles.events.installedHandlers();
  doubles.events.fail(FakeEvents::Operation::InstallHandler, -50, 3);
  EXPECT_THROW(other->initialise(), std::runtime_error);
  EXPECT_EQ(doubles.events.installedHandlers(), before + 3);
  other.reset();
  EXPECT_EQ(doubles.events.installedHandlers(), before);
}

TEST_F(CarbonEventHandlerTest, OpenEventShowsTheWindow) {
  EXPECT_EQ(doubles.events.sendAppleEvent("aevt"_4cc, "oapp"_4cc), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"showWindow(PrinterSelectWindow)"});
}

TEST_F(CarbonEventHandlerTest, OpenEventAfterQuitIsNotHandled) {
  command("quit"_4cc);
  forget();
  EXPECT_EQ(doubles.events.sendAppleEvent("aevt"_4cc, "oapp"_4cc), -1708);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(CarbonEventHandlerTest, OpenEventWithoutReferenceIsNotHandled) {
  Event reply("aevt"_4cc, "ansr"_4cc);
  EXPECT_EQ(doubles.events.openHandler(Event("aevt"_4cc, "oapp"_4cc), reply, nullptr), -1708);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(CarbonEventHandlerTest, ClosedWindowEndsTheLoop) {
  EXPECT_EQ(caught(WindowClose)(Event("wind"_4cc, 72)), -9874);
  EXPECT_EQ(caught(WindowClose).withoutUserData(Event("wind"_4cc, 72)), -9874);
  EXPECT_EQ(doubles.events.takeCalls(), (Lines{"quit", "quit"}));
}

TEST_F(CarbonEventHandlerTest, UserClosesTheWindow) {
  EXPECT_TRUE(screen().closeWindow("PrinterSelectWindow"));
  EXPECT_EQ(doubles.events.takeCalls(), Lines{"quit"});
  EXPECT_FALSE(screen().exists("PrinterSelectWindow"));
}

TEST_F(CarbonEventHandlerTest, ApplicationQuitRemovesTheHandlersInOrder) {
  EXPECT_EQ(caught(ApplicationQuit)(Event("appl"_4cc, 3)), -9874);
  EXPECT_EQ(doubles.events.takeCalls(), (Lines{"remove 3", "remove 4", "remove 5", "remove 6"}));
  EXPECT_EQ(command("Down"_4cc), -9874);
}

TEST_F(CarbonEventHandlerTest, SecondApplicationQuitRemovesNothing) {
  caught(ApplicationQuit)(Event("appl"_4cc, 3));
  forget();
  EXPECT_EQ(caught(ApplicationQuit)(Event("appl"_4cc, 3)), -9874);
  EXPECT_EQ(doubles.events.takeCalls(), Lines{});
}

TEST_F(CarbonEventHandlerTest, ApplicationQuitWithoutUserDataRemovesNothing) {
  EXPECT_EQ(caught(ApplicationQuit).withoutUserData(Event("appl"_4cc, 3)), -9874);
  EXPECT_EQ(doubles.events.takeCalls(), Lines{});
}

TEST_F(CarbonEventHandlerTest, ResumeEventResumesItsDownload) {
  startDownload();
  EXPECT_EQ(caught(Downloader)(downloaderEvent(1, &downloader)), 0);
  EXPECT_EQ(network.sent().size(), 1u);
}

TEST_F(CarbonEventHandlerTest, FailureEventStopsItsDownload) {
  startDownload();
  EXPECT_EQ(caught(Downloader)(downloaderEvent(2, &downloader)), 0);
  EXPECT_FALSE(network.isOpen());
  EXPECT_EQ(doubles.events.commands(), Lines{"DlNo"});
  EXPECT_TRUE(screen().isVisible("FailedSheet"));
}

TEST_F(CarbonEventHandlerTest, ControllerComesFromTheEventAlone) {
  startDownload();
  FirmwareDownloader other;
  EXPECT_EQ(caught(Downloader).withoutUserData(downloaderEvent(2, &other)), 0);
  EXPECT_TRUE(network.isOpen());
  EXPECT_EQ(doubles.events.commands(), Lines{"DlNo"});
}

TEST_F(CarbonEventHandlerTest, DownloaderEventWithoutControllerIsNotHandled) {
  startDownload();
  for (const std::uint32_t kind : {1u, 2u, 3u}) {
    EXPECT_EQ(caught(Downloader)(downloaderEvent(kind, nullptr)), -9874);
    EXPECT_EQ(caught(Downloader)(Event("FwDl"_4cc, kind)), -9874);
  }
  EXPECT_TRUE(network.isOpen());
  EXPECT_TRUE(network.sent().empty());
}

TEST_F(CarbonEventHandlerTest, DownloaderEventOfAnotherKindIsNotHandled) {
  startDownload();
  for (const std::uint32_t kind : {0u, 3u, 0xFFFFFFFFu}) {
    EXPECT_EQ(caught(Downloader)(downloaderEvent(kind, &downloader)), -9874);
  }
  EXPECT_TRUE(network.isOpen());
  EXPECT_TRUE(network.sent().empty());
  EXPECT_EQ(doubles.events.commands(), Lines{});
}

TEST_F(CarbonEventHandlerTest, PostedResumeIsDelivered) {
  addUsbPrinter();
  select(1);
  command("Down"_4cc);
  forget();
  EXPECT_TRUE(doubles.events.deliverNext());
  EXPECT_EQ(doubles.log.entries().front(), (LogEntry{5, "Clearing unsolicited status updates..."}));
}

}  // namespace
