#include <csignal>

#include "BusTest.h"
#include "platform/dbus/IdleInhibition.h"

namespace {

class IdleInhibitionTest : public BusTest {
 protected:
  void offerDesktop(Lines names) { offer(PrivateBus::Kind::Session, std::move(names)); }

  void expectTheScreenSaverInstead() {
    EXPECT_EQ(news(), "screensaver fwupdate | Why.");
    inhibition->end();
    EXPECT_EQ(news(), "screensaver released 4711");
  }

  void expectNothingToGiveBack() {
    EXPECT_EQ(news(), "screensaver fwupdate | Why.");
    ASSERT_TRUE(runLoop.runUntil([&] {
      inhibition->end();
      return runLoop.enabledWatches() == 0;
    }));
    EXPECT_EQ(news(), "left without giving back");
  }

  std::optional<platform::IdleInhibition> inhibition{std::in_place, runLoop,
                                                     platform::PowerLockTexts{"fwupdate", "Why."}};
};

TEST_F(IdleInhibitionTest, ThePortalIsAskedFirst) {
  offerDesktop({"portal", "screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  inhibition->end();
  EXPECT_EQ(news(), "portal closed");
}

TEST_F(IdleInhibitionTest, WithoutPortalTheScreenSaverIsAsked) {
  offerDesktop({"screensaver"});
  inhibition->begin();
  expectTheScreenSaverInstead();
}

TEST_F(IdleInhibitionTest, APortalThatRefusesLeavesItToTheScreenSaver) {
  offerDesktop({"portal=refuses", "screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "refused 12 | reason | Why.");
  expectTheScreenSaverInstead();
}

TEST_F(IdleInhibitionTest, APortalWhoseDesktopDoesNotLeavesItToTheScreenSaver) {
  offerDesktop({"portal=cancels", "screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  expectTheScreenSaverInstead();
}

TEST_F(IdleInhibitionTest, APortalThatCannotBeUnderstoodLeavesItToTheScreenSaver) {
  offerDesktop({"portal=confused", "screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  expectTheScreenSaverInstead();
}

TEST_F(IdleInhibitionTest, APortalThatDoesNotSayWhatItGaveLeavesItToTheScreenSaver) {
  offerDesktop({"portal=stammers", "screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  expectTheScreenSaverInstead();
}

TEST_F(IdleInhibitionTest, ACookieThatCannotBeUnderstoodIsNotGivenBack) {
  offerDesktop({"screensaver=confused"});
  inhibition->begin();
  expectNothingToGiveBack();
}

TEST_F(IdleInhibitionTest, ARequestThatComesWithAnErrorLeavesItToTheScreenSaver) {
  offerDesktop({"portal=fails", "screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  expectTheScreenSaverInstead();
}

TEST_F(IdleInhibitionTest, ACookieThatComesWithAnErrorIsNotGivenBack) {
  offerDesktop({"screensaver=fails"});
  inhibition->begin();
  expectNothingToGiveBack();
}

TEST_F(IdleInhibitionTest, WhatIsGivenAfterTheEndIsGivenBack) {
  offerDesktop({"screensaver=waits"});
  inhibition->begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  inhibition->end();
  services->answer();
  EXPECT_EQ(news(), "screensaver fwupdate | Why.");
  EXPECT_EQ(news(), "screensaver released 4711");
}

TEST_F(IdleInhibitionTest, WhatIsGivenAfterTheEndServesTheNextDownload) {
  offerDesktop({"portal=waits"});
  inhibition->begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  inhibition->end();
  inhibition->begin();
  services->answer();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  runLoop.runUntil([&] { return runLoop.putOff() > 0; });
  runLoop.runAllLater();
  EXPECT_FALSE(services->hasNews());
  inhibition->end();
  EXPECT_EQ(news(), "portal closed");
}

TEST_F(IdleInhibitionTest, TheEndOfTheProgramGivesItBack) {
  offerDesktop({"screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "screensaver fwupdate | Why.");
  runLoop.runUntil([&] { return runLoop.putOff() > 0; });
  runLoop.runAllLater();
  inhibition.reset();
  EXPECT_EQ(news(), "screensaver released 4711");
}

TEST_F(IdleInhibitionTest, ADesktopThatOffersNothingIsLeftAtTheEnd) {
  inhibition->begin();
  runLoop.runAllLater();
  EXPECT_NE(runLoop.enabledWatches(), 0u);
  ASSERT_TRUE(runLoop.runUntil([&] {
    inhibition->end();
    return runLoop.enabledWatches() == 0;
  }));
}

TEST_F(IdleInhibitionTest, ADownloadThatEndsAtOnceAsksNobody) {
  offerDesktop({"portal"});
  inhibition->begin();
  inhibition->end();
  runLoop.runAllLater();
  EXPECT_EQ(runLoop.enabledWatches(), 0u);
  inhibition->begin();
  EXPECT_EQ(news(), "portal 12 | reason | Why.");
  EXPECT_FALSE(services->hasNews());
}

TEST_F(IdleInhibitionTest, WithoutSessionNothingHappens) {
  sessionBus.stop();
  inhibition->begin();
  runLoop.runAllLater();
  EXPECT_EQ(runLoop.enabledWatches(), 0u);
  inhibition->end();
}

TEST_F(IdleInhibitionTest, AStoppedBusHoldsNothingUp) {
  sessionBus.signal(SIGSTOP);
  inhibition->begin();
  runLoop.runAllLater();
  inhibition->end();
  inhibition->begin();
  runLoop.runAllLater();
  inhibition.reset();
  EXPECT_EQ(runLoop.enabledWatches(), 0u);
}

TEST_F(IdleInhibitionTest, TheNextDownloadFindsTheBusThatHasReturned) {
  offerDesktop({"screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "screensaver fwupdate | Why.");
  sessionBus.stop();
  ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.enabledWatches() == 0; }));
  inhibition->end();
  sessionBus.start();
  offerDesktop({"screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "screensaver fwupdate | Why.");
}

TEST_F(IdleInhibitionTest, TheNextDownloadFindsTheBusThatWentWithoutAnAnswer) {
  offerDesktop({"screensaver=waits"});
  inhibition->begin();
  EXPECT_EQ(news(), "waiting Inhibit");
  sessionBus.stop();
  ASSERT_TRUE(runLoop.runUntil([&] { return runLoop.enabledWatches() == 0; }));
  inhibition->end();
  sessionBus.start();
  offerDesktop({"screensaver"});
  inhibition->begin();
  EXPECT_EQ(news(), "screensaver fwupdate | Why.");
}

}  // namespace
