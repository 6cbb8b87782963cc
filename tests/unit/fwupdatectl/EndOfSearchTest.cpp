#include <gtest/gtest.h>

#include "endOfSearch.h"

namespace {

using namespace std::chrono_literals;

TEST(EndOfSearchTest, WithoutPrintersItIsTheTimeThatWasGiven) {
  EXPECT_EQ(endOfSearch(3s, 0ms), 3s);
  EXPECT_EQ(endOfSearch(0s, 0ms), 0s);
}

TEST(EndOfSearchTest, OutlastsTheQuestionThatFollowsTheLastArrival) {
  EXPECT_EQ(endOfSearch(3s, 1700ms), 6400ms);    // asked again after 3 s
  EXPECT_EQ(endOfSearch(3s, 3900ms), 10800ms);   // 7 s
  EXPECT_EQ(endOfSearch(3s, 7900ms), 18800ms);   // 15 s
  EXPECT_EQ(endOfSearch(3s, 16600ms), 36200ms);  // 31 s
}

TEST(EndOfSearchTest, NobodyDragsItOut) {
  EXPECT_EQ(endOfSearch(3s, 59s), 60s);
  EXPECT_EQ(endOfSearch(90s, 80s), 90s);
}

TEST(EndOfSearchTest, WhereNobodyHasSearchedItIsSaid) {
  using Searcher = platform::DiscoveryStatus::Searcher;
  EXPECT_EQ(noteOnSearch(Searcher::Nobody),
            "fwupdatectl: Nobody has searched the network so far. Give a longer --wait, or see "
            "\"fwupdatectl check\".\n");
  EXPECT_EQ(noteOnSearch(Searcher::Daemon), "");
  EXPECT_EQ(noteOnSearch(Searcher::Program), "");
}

}  // namespace
