#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RecordingObserver.h"
#include "platform/DownloadObserver.h"
#include "platform/Platform.h"

namespace {

using platform::DownloadObservers;
using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::Text;
using std::chrono::milliseconds;

TEST(DownloadObservers, EachIsToldInTheOrderOfAdding) {
  std::vector<std::string> calls;
  RecordingObserver first([&](const std::string& call) { calls.push_back("first: " + call); });
  RecordingObserver second([&](const std::string& call) { calls.push_back("second: " + call); });
  DownloadObservers both;
  both.add(first);
  both.add(second);

  both.downloadBegan(Text::fromUtf8("Office"), Text::fromUtf8("10.0.0.5"));
  both.phaseBegan(DownloadPhase::BurningFirmware, milliseconds(6000));
  both.versionsKnown(100, 200);
  both.bytesHandedOver(3, 7);
  both.errorLogged("Unable to write data");
  both.downloadEnded(DownloadOutcome::Failed);

  EXPECT_EQ(calls, (std::vector<std::string>{
                       "first: began Office (10.0.0.5)",
                       "second: began Office (10.0.0.5)",
                       "first: BurningFirmware within 6000",
                       "second: BurningFirmware within 6000",
                       "first: versions 100 200",
                       "second: versions 100 200",
                       "first: handed over 3 of 7",
                       "second: handed over 3 of 7",
                       "first: error Unable to write data",
                       "second: error Unable to write data",
                       "first: ended Failed",
                       "second: ended Failed",
                   }));
}

TEST(DownloadObserver, IsTheInstalledOne) {
  DownloadObservers observers;
  const platform::PlatformScope scope({.downloadObserver = &observers});
  EXPECT_EQ(&platform::downloadObserver(), &observers);
}

TEST(DownloadObserver, NobodyNeedsToWatch) {
  const platform::PlatformScope scope({});
  platform::downloadObserver().downloadEnded(DownloadOutcome::Succeeded);
  EXPECT_EQ(platform::current().downloadObserver, nullptr);
}

}  // namespace
