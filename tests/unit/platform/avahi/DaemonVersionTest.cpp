#include <gmock/gmock.h>

#include "platform/avahi/DaemonVersion.h"

namespace {

TEST(DaemonVersion, VersionsOfTheLibrariesAreNumbersWithPoints) {
  EXPECT_THAT(platform::avahiVersion(), testing::MatchesRegex("[0-9]+\\.[0-9].*"));
  EXPECT_THAT(platform::busLibraryVersion(), testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
}

}  // namespace
