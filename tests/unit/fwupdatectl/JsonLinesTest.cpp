#include <gtest/gtest.h>

#include "JsonLines.h"

namespace {

TEST(JsonLines, CauseHasItsSubjectInIt) {
  const platform::FailureCause why{nullptr, "The program %1 is using it.", "Close %1.", "cupsd"};
  EXPECT_EQ(toJson(why).dump(),
            R"({"cause":"The program cupsd is using it.","next_step":"Close cupsd."})");
}

TEST(JsonLines, MissingRightIsMarked) {
  const platform::FailureCause why{nullptr, "You may not.", "Ask.", "", true};
  EXPECT_EQ(toJson(why).dump(),
            R"({"cause":"You may not.","next_step":"Ask.","not_permitted":true})");
}

}  // namespace
