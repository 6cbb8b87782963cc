// Printers on the network that come and go in crowds, and a daemon that is restarted again and
// again.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "Course.h"
#include "CrowdTest.h"

namespace {

using std::chrono::seconds;
using testing::IsEmpty;
using Searcher = platform::DiscoveryStatus::Searcher;

constexpr std::size_t kShortForm = 8;

// As many records as the stack in the program has room for, and as many packets as a crowd sends.
void startRoomyDaemon() {
  privatenetwork::startDaemon({"cache-entries-max=16384", "ratelimit-interval-usec=1000000",
                               "ratelimit-burst=1000", "[publish]", "disable-publishing=yes"});
}

class ServicesTest : public CrowdTest {
 protected:
  bool waitForSearcher(Searcher searcher) {
    return runLoop.runUntil([&] { return status.searcher() == searcher; }, kPatience);
  }

  // Gives the order to so few at a time that all of them are heard, where the machine has time,
  // until each was told of in such a line. Who was not heard says it again. One that is heard late
  // on one link may be told of twice.
  void orderUntilTold(const std::string& order, unsigned first, unsigned count,
                      const std::string& line) {
    std::size_t looked = 0;
    std::set<std::string> heard;
    const auto haveHeard = [&](std::size_t wanted) {
      for (; looked < told().size(); ++looked) {
        if (told()[looked].starts_with(line)) heard.insert(told()[looked]);
      }
      return heard.size() >= wanted;
    };
    for (unsigned done = 0; done < count; done += kPart) {
      const std::string part =
          std::to_string(first + done) + "-" + std::to_string(first + done + kPart - 1);
      int orders = 0;
      do {
        ASSERT_LT(++orders, 20) << part << " " << testing::PrintToString(told());
        crowd->order(order + " " + part);
      } while (!runLoop.runUntil([&] { return haveHeard(done + kPart); }, kHearing));
    }
  }

  std::ptrdiff_t linesOf(const std::string& beginning) const {
    return std::ranges::count_if(
        told(), [&](const std::string& line) { return line.starts_with(beginning); });
  }

  void forgetRecords() {
    recorder->told = {};
    recorder->firstAddress.clear();
    recorder->txtOf.clear();
  }

  static constexpr unsigned kPart = 20;
  static constexpr seconds kHearing{10};
};

class CrowdsTest : public ServicesTest, public testing::WithParamInterface<bool> {};

// Two crowds take turns, so that none of the names is known from the time before.
TEST_P(CrowdsTest, CrowdsComeAndGo) {
  const std::size_t crowds = eventsWanted(kShortForm);
  const unsigned size = crowds > kShortForm ? 1000 : kPart;
  if (GetParam()) startRoomyDaemon();
  gather(2 * size, {"vanish 1-" + std::to_string(2 * size)});
  search();
  ASSERT_TRUE(waitForSearcher(GetParam() ? Searcher::Daemon : Searcher::Program));
  const std::string stack = GetParam() ? "daemon" : "program";
  Course course("services-" + stack,
                "Crowds of " + std::to_string(size) + ", found by the " + stack,
                "crowds that came and went", crowds);
  for (std::size_t i = 0; i < crowds && !HasFailure(); ++i) {
    const unsigned first = i % 2 == 0 ? 1 : size + 1;
    orderUntilTold("announce", first, size, "resolved ");
    orderUntilTold("withdraw", first, size, "removed ");
    EXPECT_TRUE(
        runLoop.runUntil([&] { return linesOf("added ") == linesOf("removed "); }, kHearing))
        << testing::PrintToString(told());
    forgetRecords();
    course.count();
  }
  course.expectToAdd(size * 20.0);
}

INSTANTIATE_TEST_SUITE_P(EachStack, CrowdsTest, testing::Bool(), stackName);

class RestartsTest : public ServicesTest {};

TEST_F(RestartsTest, DaemonRestartsAndNothingIsLost) {
  const std::size_t restarts = eventsWanted(kShortForm);
  startRoomyDaemon();
  gather(20);
  search();
  ASSERT_TRUE(waitForResolved(20));
  forgetRecords();
  Course course("restarts", "Restarts of the daemon", "restarts", restarts);
  for (std::size_t i = 0; i < restarts; ++i) {
    privatenetwork::stopDaemon(i % 2 == 0 ? "TERM" : "KILL");
    ASSERT_TRUE(waitForSearcher(Searcher::Program));
    startRoomyDaemon();
    ASSERT_TRUE(waitForSearcher(Searcher::Daemon));
    course.count();
  }
  waitForCarryOver();
  EXPECT_THAT(told(), IsEmpty());
  course.expectToAdd(60);
}

}  // namespace
