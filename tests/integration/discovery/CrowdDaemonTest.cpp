// A building full of printers, and a daemon that refuses, ends or hangs.
#include "CrowdTest.h"

namespace {

using std::chrono::seconds;

class CrowdDaemonTest : public CrowdTest {};

// It grants each client sixteen questions at a time, its browser among them.
TEST_F(CrowdDaemonTest, PrintersAreFoundByADaemonThatRefusesMostQuestions) {
  privatenetwork::startDaemon({"objects-per-client-max=16"});
  gather(100);
  search();
  ASSERT_TRUE(waitForResolved(100));
  expectEachListedOnce(1, 100);
}

TEST_F(CrowdDaemonTest, DaemonThatRestartsAmongTheAnswersLosesNothing) {
  startDaemon();
  gather(100);
  search();
  ASSERT_TRUE(waitForResolved(20));
  privatenetwork::stopDaemon("KILL");
  startDaemon();
  ASSERT_TRUE(waitForResolved(100));
  waitForCarryOver();
  expectEachListedOnce(1, 100);
}

TEST_F(CrowdDaemonTest, DaemonThatIsStoppedAmongTheAnswersAndGoesOnLosesNothing) {
  startDaemon();
  gather(100);
  search();
  ASSERT_TRUE(waitForResolved(20));
  signal("avahi-daemon", "STOP");
  runLoop.runFor(seconds(5));
  signal("avahi-daemon", "CONT");
  ASSERT_TRUE(waitForResolved(100));
  expectEachListedOnce(1, 100);
}

}  // namespace
