#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "RawDataCollector.h"
#include "WatchedMemory.h"

namespace {

using testing::ThrowsMessage;

void push(RawDataCollector& collector, const std::string& bytes) {
  collector.pushBackData(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string pop(RawDataCollector& collector, std::size_t count) {
  std::string bytes(count, '?');
  auto* const begin = reinterpret_cast<unsigned char*>(bytes.data());
  collector.popData(begin, begin + count);
  return bytes;
}

TEST(RawDataCollector, StartsEmpty) { EXPECT_EQ(RawDataCollector().size(), 0u); }

TEST(RawDataCollector, JoinsPiecesInTheOrderOfTheirArrival) {
  RawDataCollector collector;
  push(collector, "0123456789");
  push(collector, "abcdef");
  EXPECT_EQ(collector.size(), 16u);
  EXPECT_EQ(pop(collector, 16), "0123456789abcdef");
  EXPECT_EQ(collector.size(), 0u);
}

TEST(RawDataCollector, KeepsWhatWasNotAskedFor) {
  RawDataCollector collector;
  push(collector, "0123456789abcdefghij");
  EXPECT_EQ(pop(collector, 16), "0123456789abcdef");
  EXPECT_EQ(collector.size(), 4u);
  EXPECT_EQ(pop(collector, 4), "ghij");
}

TEST(RawDataCollector, RefusesMoreThanItHas) {
  RawDataCollector collector;
  EXPECT_THAT([&] { pop(collector, 1); },
              ThrowsMessage<std::runtime_error>("Not enough data to pop"));
  EXPECT_EQ(collector.size(), 0u);
}

TEST(RawDataCollector, ChangesNothingWhenItRefuses) {
  RawDataCollector collector;
  push(collector, "abc");
  unsigned char destination[4] = {1, 2, 3, 4};
  EXPECT_THROW(collector.popData(destination, destination + 4), std::runtime_error);
  EXPECT_THAT(destination, testing::ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(pop(collector, 3), "abc");
}

TEST(RawDataCollector, TakesAReversedRangeForTooMany) {
  RawDataCollector collector;
  push(collector, "abc");
  unsigned char destination[4] = {};
  EXPECT_THROW(collector.popData(destination + 1, destination), std::runtime_error);
}

TEST(RawDataCollector, TransfersOfNothingChangeNothing) {
  RawDataCollector collector;
  collector.pushBackData(nullptr, 0);
  collector.popData(nullptr, nullptr);
  EXPECT_EQ(collector.size(), 0u);
}

TEST(RawDataCollector, HasNoLimit) {
  RawDataCollector collector;
  for (int i = 0; i < 500; ++i) push(collector, std::string(65536, static_cast<char>(i)));
  EXPECT_EQ(collector.size(), 32768000u);
  for (int i = 0; i < 500; ++i) {
    ASSERT_EQ(pop(collector, 65536), std::string(65536, static_cast<char>(i))) << i;
  }
}

TEST(RawDataCollector, ExhaustedMemoryIsReportedWhereverItShowsAndChangesNothing) {
  const std::string bytes(10000, 'x');
  std::size_t allocations = 0;
  for (bool hasFailed = true; hasFailed; ++allocations) {
    RawDataCollector collector;
    push(collector, "abc");
    {
      const FailingAllocation failing(allocations);
      try {
        push(collector, bytes);
        hasFailed = false;
      } catch (const std::bad_alloc&) {
      }
      EXPECT_EQ(failing.hasFailed(), hasFailed);
    }
    EXPECT_EQ(collector.size(), hasFailed ? 3u : 10003u);
    EXPECT_EQ(pop(collector, 3), "abc");
  }
  EXPECT_GT(allocations, 1u);
}

TEST(RawDataCollector, CopiesItsBytes) {
  RawDataCollector collector;
  push(collector, "abc");
  RawDataCollector copy = collector;
  EXPECT_EQ(pop(copy, 3), "abc");
  EXPECT_EQ(collector.size(), 3u);

  copy = collector;
  EXPECT_EQ(pop(collector, 3), "abc");
  EXPECT_EQ(pop(copy, 3), "abc");
}

TEST(RawDataCollector, AssignmentToItselfDoesNothing) {
  RawDataCollector collector;
  push(collector, "abc");
  const RawDataCollector& same = collector;
  collector = same;
  EXPECT_EQ(pop(collector, 3), "abc");
}

TEST(RawDataCollector, IsDeletedThroughItsBase) {
  EXPECT_TRUE(std::has_virtual_destructor_v<RawDataCollector>);
}

}  // namespace
