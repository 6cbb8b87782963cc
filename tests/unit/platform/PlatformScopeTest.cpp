#include <gtest/gtest.h>

#include "FakeStatusTable.h"
#include "FakeSystemLog.h"
#include "platform/Platform.h"

namespace {

using platform::current;
using platform::Platform;
using platform::PlatformScope;

TEST(PlatformScope, NothingIsInstalledAtFirst) {
  EXPECT_EQ(current().systemLog, nullptr);
  EXPECT_EQ(current().statuses, nullptr);
  EXPECT_EQ(current().bundle, nullptr);
  EXPECT_EQ(current().strings, nullptr);
  EXPECT_EQ(current().files, nullptr);
  EXPECT_EQ(current().runLoop, nullptr);
  EXPECT_EQ(current().events, nullptr);
  EXPECT_EQ(current().network, nullptr);
  EXPECT_EQ(current().services, nullptr);
  EXPECT_EQ(current().usb, nullptr);
  EXPECT_EQ(current().toolkit, nullptr);
}

TEST(PlatformScope, InstallsForItsLifetime) {
  FakeSystemLog log;
  {
    const PlatformScope scope(Platform{.systemLog = &log});
    EXPECT_EQ(current().systemLog, &log);
  }
  EXPECT_EQ(current().systemLog, nullptr);
}

TEST(PlatformScope, InnerScopeReplacesEverySurfaceAndBringsThemBack) {
  FakeSystemLog log;
  FakeStatusTable statuses;
  const PlatformScope outer(Platform{.statuses = &statuses, .systemLog = &log});
  {
    FakeSystemLog innerLog;
    const PlatformScope inner(Platform{.systemLog = &innerLog});
    EXPECT_EQ(current().systemLog, &innerLog);
    EXPECT_EQ(current().statuses, nullptr);
  }
  EXPECT_EQ(current().systemLog, &log);
  EXPECT_EQ(current().statuses, &statuses);
}

}  // namespace
