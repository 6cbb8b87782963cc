// A window that stays open, by a clock that is turned on minute by minute: printers come and go on
// the network and on USB, some never tell where they are, and the user updates one now and then.
#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include "Application.h"
#include "BusPrinter.h"
#include "Course.h"
#include "DownloadFixture.h"
#include "TemporaryDirectory.h"

namespace {

// In bytes a minute. The list numbers printers by their arrival and forgets none, and what was
// logged of them stays. So do the devices of the bus's double.
constexpr double kNothing = 10;
constexpr double kKeptOfAMinute = 1120;

constexpr std::uint16_t kNobodysPort = 1;

class WindowTest : public testing::Test {
 protected:
  WindowTest() { std::ofstream(mResources.path() / "product.brand.bin") << firmware200(); }

  static void passMinute(Application& application) {
    application.pass(std::chrono::minutes(1));
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
  }

  // Each of six comes for a minute, and one that is silent for four of five.
  void comeAndGoOnTheNetwork(Application& application, std::size_t minute) {
    const std::string name = "Printer " + std::to_string(minute / 2 % 6);
    if (minute % 2 == 0) {
      application.announce(name, 9100);
      ++mArrivals;
    } else {
      application.withdraw(name);
    }
    if (minute % 5 == 0) application.announceSilent("Silent");
    if (minute % 5 == 4) application.withdraw("Silent");
    application.settle();
  }

  void plugIn(Application& application) {
    mPrinter = std::make_unique<BusPrinter>(application);
    mPrinter->plugIn(fakePrinter());
    mNumber = static_cast<unsigned>(++mArrivals);
  }

  void begin(Application& application, unsigned row) {
    ASSERT_TRUE(application.select(row));
    ASSERT_TRUE(application.download());
  }

  void update(Application& application, const std::string& outcome) {
    begin(application, mNumber);
    mPrinter->serveAll();
    expectOutcome(application, outcome);
  }

  void updateAndUnplug(Application& application) {
    begin(application, mNumber);
    ASSERT_TRUE(mPrinter->serveUntil(3));
    mPrinter->unplug();
    mPrinter->serveAll();
    expectOutcome(application, "DlNo");
  }

  void updateRefused(Application& application) {
    begin(application, 1);
    EXPECT_TRUE(application.runUntil([&] { return !application.outcome().empty(); }));
    expectOutcome(application, "DlNo");
  }

  static void expectOutcome(Application& application, const std::string& outcome) {
    EXPECT_EQ(application.outcome(), outcome);
    EXPECT_EQ(application.closeAlert(), outcome != "DlOk");
  }

  TemporaryDirectory mResources;
  std::unique_ptr<BusPrinter> mPrinter;
  unsigned mNumber = 0;
  std::size_t mArrivals = 0;
};

// Nothing is added to what the list keeps.
TEST_F(WindowTest, DayWithTheSamePrintersAddsNothing) {
  const std::size_t all = eventsWanted(8) * 60;
  Application application(mResources.path().string());
  EXPECT_EQ(application.run([&] {
    application.announceSilent("Silent");
    application.announce("Printer", kNobodysPort);
    ++mArrivals;
    plugIn(application);
    Course course("quiet-window", "An open window, the same printers", "minutes", all);
    for (std::size_t minute = 0; minute < all && !HasFailure(); ++minute) {
      if (minute % 10 == 3) updateRefused(application);
      if (minute % 10 == 8) update(application, minute < 10 ? "DlOk" : "DlUd");
      passMinute(application);
      course.count();
    }
    course.expectToAdd(kNothing);
  }),
            0);
  EXPECT_THAT(application.usb().problems(), testing::IsEmpty());
}

TEST_F(WindowTest, DayOfComingAndGoingAddsWhatTheListKeeps) {
  const std::size_t all = eventsWanted(8) * 60;
  Application application(mResources.path().string());
  EXPECT_EQ(application.run([&] {
    Course course("busy-window", "An open window, printers come and go", "minutes", all);
    for (std::size_t minute = 0; minute < all && !HasFailure(); ++minute) {
      comeAndGoOnTheNetwork(application, minute);
      if (minute % 10 == 0) plugIn(application);
      if (minute % 10 == 5) update(application, "DlOk");
      if (minute % 20 == 9) mPrinter->unplug();
      if (minute % 20 == 19) updateAndUnplug(application);
      passMinute(application);
      course.count();
    }
    course.expectToAdd(kKeptOfAMinute);
  }),
            0);
  EXPECT_THAT(application.usb().problems(), testing::IsEmpty());
}

}  // namespace
