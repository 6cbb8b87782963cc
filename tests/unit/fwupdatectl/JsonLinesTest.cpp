#include <gmock/gmock.h>

#include <array>
#include <ctime>
#include <string>

#include "JsonLines.h"

namespace {

std::string secondNow() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::array<char, 32> text{};
  static_cast<void>(std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &utc));
  return text.data();
}

TEST(JsonLines, EventHasTheTimeOfDayInUtc) {
  const std::string before = secondNow();
  const std::string time =
      jsonEvent("check", nlohmann::ordered_json::object()).at("time").get<std::string>();
  const std::string after = secondNow();
  EXPECT_GE(time.substr(0, 19), before);
  EXPECT_LE(time.substr(0, 19), after);
  EXPECT_THAT(time, testing::MatchesRegex("....-..-..T..:..:..\\.[0-9][0-9][0-9]Z"));
}

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
