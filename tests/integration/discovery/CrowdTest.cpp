// A building full of printers that behave, and such as do not.
#include "CrowdTest.h"

namespace {

using std::chrono::milliseconds;
using testing::Each;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

class CrowdWithEachStackTest : public CrowdTest, public testing::WithParamInterface<bool> {
 protected:
  CrowdWithEachStackTest() {
    if (GetParam()) startDaemon();
  }
};

TEST_P(CrowdWithEachStackTest, EachOf300PrintersIsFoundOnceWithItsIPv4Address) {
  gather(300);
  search();
  ASSERT_TRUE(waitForResolved(300));
  expectEachListedOnce(1, 300);
  EXPECT_THAT(told(), Each(Not(StartsWith("failed"))));
}

TEST_P(CrowdWithEachStackTest, PrintersThatHaveToBeAskedForEverythingAreFound) {
  gather(100, {"--names-only"});
  search();
  ASSERT_TRUE(waitForResolved(100));
  expectEachListedOnce(1, 100);
}

TEST_P(CrowdWithEachStackTest, PrintersThatComeAndGoTogetherAreToldOf) {
  gather(60, {"vanish 31-60"});
  search();
  ASSERT_TRUE(waitForResolved(30));
  crowd->order("announce 31-60");
  ASSERT_TRUE(waitForResolved(60));
  crowd->order("withdraw 1-30");
  ASSERT_TRUE(waitUntilTold("removed ", 1, 30));
  expectEachListedOnce(31, 60);
}

// The silent ones are asked for in vain for half a minute.
TEST_P(CrowdWithEachStackTest, PrintersThatNeverAnswerDoNotHoldUpTheOthers) {
  gather(230, {"silent 1-200"});
  search();
  ASSERT_TRUE(waitForResolved(30));
  EXPECT_THAT(told(), Each(Not(StartsWith("failed"))));
  expectEachListedOnce(201, 230);
}

TEST_P(CrowdWithEachStackTest, PrintersThatAnswerAfterTwentySecondsAreFound) {
  gather(20, {"late 1-10 20"});
  search();
  ASSERT_TRUE(waitForResolved(20));
  EXPECT_THAT(told(), Each(Not(StartsWith("failed"))));
  expectEachListedOnce(1, 20);
}

TEST_P(CrowdWithEachStackTest, PrinterThatNamesAnotherHostHasThatHostsAddress) {
  gather(10, {"elsewhere 1-5"});
  search();
  ASSERT_TRUE(waitForResolved(10));
  for (unsigned number = 1; number <= 5; ++number) {
    EXPECT_THAT(recorder->firstAddress[printer(number)], isIPv4Of(number + 1)) << number;
  }
  expectEachListedOnce(6, 10);
}

TEST_P(CrowdWithEachStackTest, PrintersThatMoveWhileTheyAreAskedHaveOneOfTheirAddresses) {
  gather(20, {"moving 1-10"});
  search();
  ASSERT_TRUE(waitForResolved(20));
  for (unsigned number = 1; number <= 10; ++number) {
    EXPECT_THAT(
        recorder->firstAddress[printer(number)],
        ElementsAre(16, 2, 0x23, 0x8C, 10, testing::Ge(102), 0, number, 0, 0, 0, 0, 0, 0, 0, 0))
        << number;
  }
  expectEachListedOnce(11, 20);
}

TEST_P(CrowdWithEachStackTest, PrintersThatComeAndGoAHundredTimesASecondEndAsWhatTheyAre) {
  gather(40);
  crowd->order("flap 1-20 100");
  search();
  ASSERT_TRUE(waitUntilTold("resolved ", 21, 40));
  crowd->order("steady 1-20");
  runLoop.runFor(milliseconds(2500));  // the last goodbye is a second old by then
  EXPECT_TRUE(runLoop.runUntil([&] { return isThereNow(1, 20); }, kPatience));
  for (unsigned number = 1; number <= 20; ++number) {
    EXPECT_THAT(recorder->firstAddress[printer(number)], isIPv4Of(number)) << number;
  }
  expectEachListedOnce(21, 40);
}

TEST_P(CrowdWithEachStackTest, TextOf8KiBArrivesWhole) {
  gather(10, {"long-text 1-5"});
  search();
  ASSERT_TRUE(waitForResolved(10));
  expectEachListedOnce(1, 10);
  for (unsigned number = 1; number <= 5; ++number) {
    const Bytes& txt = recorder->txtOf[printer(number)];
    ASSERT_EQ(txt.size(), 8192u);
    EXPECT_EQ(Bytes(txt.begin(), txt.begin() + 10),
              (Bytes{9, 't', 'x', 't', 'v', 'e', 'r', 's', '=', '1'}));
    EXPECT_EQ(txt.back(), 'x');
  }
}

TEST_P(CrowdWithEachStackTest, PrintersWithoutTextDoNotHoldUpTheOthers) {
  gather(40, {"no-text 1-20"});
  search();
  ASSERT_TRUE(waitUntilTold("resolved ", 21, 40));
  EXPECT_THAT(told(), Each(Not(StartsWith("failed"))));
  expectEachListedOnce(21, 40);
}

TEST_P(CrowdWithEachStackTest, OneNameOnTwoMachinesIsOnePrinterWithTheAddressOfEither) {
  gather(10, {"two 1-5"});
  search();
  ASSERT_TRUE(waitForResolved(10));
  expectEachListedOnce(1, 10);
  crowd->withdraw();
  ASSERT_TRUE(waitUntilTold("removed ", 1, 10));
  for (unsigned number = 1; number <= 5; ++number) {
    EXPECT_EQ(recorder->count("added " + printer(number)), 1u);
    EXPECT_EQ(recorder->count("removed " + printer(number)), 1u);
  }
}

INSTANTIATE_TEST_SUITE_P(With, CrowdWithEachStackTest, testing::Bool(), stackName);

}  // namespace
