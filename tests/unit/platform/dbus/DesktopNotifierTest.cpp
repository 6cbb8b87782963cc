#include <csignal>

#include "BusTest.h"
#include "platform/dbus/DesktopNotifier.h"

namespace {

class DesktopNotifierTest : public BusTest {
 protected:
  void offerDaemon(const std::string& behaviour = "") {
    offer(PrivateBus::Kind::Session, {"notifications" + behaviour});
  }

  std::optional<platform::DesktopNotifier> notifier{std::in_place, runLoop, "fwupdate"};
};

TEST_F(DesktopNotifierTest, ShowsATextUnderTheProgramsNameAndIcon) {
  offerDaemon();
  notifier->show("Printer updated", "Office was updated.");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | Printer updated | Office was updated. | "
            "desktop-entry | fwupdate | -1");
}

TEST_F(DesktopNotifierTest, ShowsWhatLooksLikeMarkupAsItIs) {
  offerDaemon();
  notifier->show("R&D <b>", "<b>R&D</b> &lt; \u2068😀\u2069");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | R&D <b> | "
            "&lt;b&gt;R&amp;D&lt;/b&gt; &amp;lt; \u2068😀\u2069 | desktop-entry | fwupdate | -1");
}

TEST_F(DesktopNotifierTest, ADaemonWithoutMarkupGetsNoEscapes) {
  offerDaemon("=plain");
  notifier->show("R&D", "<b>R&D</b>");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | R&D | <b>R&D</b> | "
            "desktop-entry | fwupdate | -1");
}

TEST_F(DesktopNotifierTest, ADaemonThatTellsNonsenseGetsNoEscapes) {
  offerDaemon("=confused");
  notifier->show("R&D", "<b>R&D</b>");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | R&D | <b>R&D</b> | "
            "desktop-entry | fwupdate | -1");
}

TEST_F(DesktopNotifierTest, ADaemonThatTakesTheOthersPlaceIsAskedAnew) {
  offerDaemon();
  notifier->show("R&D", "R&D");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | R&D | R&amp;D | "
            "desktop-entry | fwupdate | -1");
  offerDaemon("=plain");
  notifier->show("R&D", "R&D");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | R&D | R&D | desktop-entry | fwupdate | -1");
}

TEST_F(DesktopNotifierTest, ShowsOneAfterTheOther) {
  offerDaemon();
  notifier->show("First", "");
  notifier->show("Second", "");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | First |  | desktop-entry | fwupdate | -1");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | Second |  | desktop-entry | fwupdate | -1");
}

TEST_F(DesktopNotifierTest, ADaemonThatHangsIsNotWaitedFor) {
  offerDaemon("=waits");
  notifier->show("Late", "");
  EXPECT_EQ(news(), "waiting GetCapabilities");
  notifier.reset();
  EXPECT_EQ(runLoop.enabledWatches(), 0u);
}

TEST_F(DesktopNotifierTest, ADaemonThatRefusesShowsNothing) {
  offerDaemon("=refuses");
  notifier->show("Nobody", "sees this.");
  EXPECT_EQ(news(), "refused ");
  notifier->show("Nobody", "sees that.");
  EXPECT_EQ(news(), "refused ");
}

TEST_F(DesktopNotifierTest, AStoppedBusHoldsNothingUp) {
  sessionBus.signal(SIGSTOP);
  notifier->show("Nobody", "sees this.");
  runLoop.runAllLater();
  notifier.reset();
  EXPECT_EQ(runLoop.enabledWatches(), 0u);
}

TEST_F(DesktopNotifierTest, ABusThatReturnsIsFoundAgain) {
  sessionBus.stop();
  notifier->show("Nobody", "sees this.");
  runLoop.runAllLater();
  EXPECT_EQ(runLoop.enabledWatches(), 0u);
  sessionBus.start();
  offerDaemon();
  notifier->show("First", "");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | First |  | desktop-entry | fwupdate | -1");
  sessionBus.stop();
  ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.enabledWatches() == 0; }));
  sessionBus.start();
  offerDaemon();
  notifier->show("Second", "");
  EXPECT_EQ(news(),
            "notification fwupdate | 0 | fwupdate | Second |  | desktop-entry | fwupdate | -1");
}

}  // namespace
