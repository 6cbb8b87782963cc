#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/DownloadObserver.h"
#include "platform/Platform.h"

namespace {

using platform::DownloadObservers;
using platform::DownloadOutcome;
using platform::DownloadPhase;
using platform::Text;
using std::chrono::milliseconds;

// Writes down what it is told, under its name.
class Recorder final : public platform::DownloadObserver {
 public:
  Recorder(std::string name, std::vector<std::string>& calls)
      : mName(std::move(name)), mCalls(calls) {}

  void downloadBegan(const Text& printer, const Text& info) noexcept override {
    note("began " + std::string(printer.utf8()) + " " + std::string(info.utf8()));
  }
  void phaseBegan(DownloadPhase phase, milliseconds bound) noexcept override {
    note("phase " + std::to_string(static_cast<int>(phase)) + " " + std::to_string(bound.count()));
  }
  void versionsKnown(unsigned int printer, unsigned int firmware) noexcept override {
    note("versions " + std::to_string(printer) + " " + std::to_string(firmware));
  }
  void bytesHandedOver(std::size_t count, std::size_t total) noexcept override {
    note("bytes " + std::to_string(count) + " " + std::to_string(total));
  }
  void errorLogged(const std::string& entry) noexcept override { note("error " + entry); }
  void downloadEnded(DownloadOutcome outcome) noexcept override {
    note("ended " + std::to_string(static_cast<int>(outcome)));
  }

 private:
  void note(const std::string& call) { mCalls.push_back(mName + ": " + call); }

  std::string mName;
  std::vector<std::string>& mCalls;
};

TEST(DownloadObservers, EachIsToldInTheOrderOfAdding) {
  std::vector<std::string> calls;
  Recorder first("first", calls);
  Recorder second("second", calls);
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
                       "first: began Office 10.0.0.5",
                       "second: began Office 10.0.0.5",
                       "first: phase 4 6000",
                       "second: phase 4 6000",
                       "first: versions 100 200",
                       "second: versions 100 200",
                       "first: bytes 3 7",
                       "second: bytes 3 7",
                       "first: error Unable to write data",
                       "second: error Unable to write data",
                       "first: ended 2",
                       "second: ended 2",
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
