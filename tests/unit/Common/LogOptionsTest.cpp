#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "LogOptions.h"
#include "LogRecorder.h"
#include "platform/Bundle.h"

namespace {

using platform::Text;
using testing::ElementsAre;
using Opening = FakeSystemLog::Opening;

// Keeps the pointer, as the host does.
class KeepingLog : public FakeSystemLog {
 public:
  void open(const char* identity, int, int) override { mIdentity = identity; }
  const char* mIdentity = nullptr;
};

class NamedBundle : public platform::Bundle {
 public:
  explicit NamedBundle(Text name, bool exists = true) : mName(std::move(name)), mExists(exists) {}

  bool exists() const override { return mExists; }
  std::optional<std::filesystem::path> resourcesDirectory() const override { return {}; }
  Text executableName() const override { return mName; }

 private:
  Text mName;
  bool mExists;
};

// What opening the log under `name` asks of the host.
std::vector<Opening> openingsUnder(platform::Bundle* bundle, bool mirror = false) {
  platform::Platform surfaces;
  surfaces.bundle = bundle;
  LogRecorder recorder(surfaces);
  { const LogOptions options(mirror); }
  EXPECT_EQ(recorder.log().closings(), 1);
  return recorder.log().openings();
}

std::vector<Opening> openingsUnder(const std::string& name) {
  NamedBundle bundle(Text::fromUtf8(name));
  return openingsUnder(&bundle);
}

TEST(LogOptions, OpensUnderTheExecutablesName) {
  EXPECT_THAT(openingsUnder("fwupdate"), ElementsAre(Opening{"fwupdate", 0, 8}));
}

TEST(LogOptions, MirrorsToStandardErrorOnRequest) {
  NamedBundle bundle(Text::fromUtf8("fwupdate"));
  EXPECT_THAT(openingsUnder(&bundle, true), ElementsAre(Opening{"fwupdate", 0x20, 8}));
}

TEST(LogOptions, ClosesTheLogAtItsEndOnly) {
  LogRecorder recorder;
  {
    const LogOptions options("fwupdate", 0);
    EXPECT_EQ(recorder.log().closings(), 0);
  }
  EXPECT_EQ(recorder.log().closings(), 1);
}

TEST(LogOptions, CutsANameOfFortyCharactersAtThirtyTwo) {
  EXPECT_THAT(openingsUnder("abcdefghijklmnopqrstuvwxyz0123456789ABCD"),
              ElementsAre(Opening{"abcdefghijklmnopqrstuvwxyz012345", 0, 8}));
}

TEST(LogOptions, CutsANameAtThirtyTwoBytesOnAWholeCharacter) {
  const std::string euro = "\xE2\x82\xAC";
  EXPECT_THAT(openingsUnder(euro + euro + euro + euro + euro + euro + euro + euro + euro + euro +
                            euro + euro),
              ElementsAre(Opening{
                  euro + euro + euro + euro + euro + euro + euro + euro + euro + euro, 0, 8}));
}

TEST(LogOptions, KeepsTheIdentityReadableAfterTheConstructor) {
  NamedBundle bundle(Text::fromUtf8("fwupdate"));
  KeepingLog log;
  platform::Platform surfaces;
  surfaces.bundle = &bundle;
  surfaces.systemLog = &log;
  const platform::PlatformScope scope(surfaces);
  const LogOptions options(false);
  EXPECT_STREQ(log.mIdentity, "fwupdate");
}

TEST(LogOptions, DoesNotOpenWithoutABundle) {
  EXPECT_THAT(openingsUnder(nullptr), ElementsAre());
  NamedBundle absent(Text::fromUtf8("fwupdate"), false);
  EXPECT_THAT(openingsUnder(&absent), ElementsAre());
}

TEST(LogOptions, DoesNotOpenWithoutAnExecutableName) {
  NamedBundle nameless{Text()};
  EXPECT_THAT(openingsUnder(&nameless), ElementsAre());
}

TEST(LogOptions, KeepsACopyOfTheIdentityItWasGiven) {
  KeepingLog log;
  platform::Platform surfaces;
  surfaces.systemLog = &log;
  const platform::PlatformScope scope(surfaces);
  std::string identity = "fwupdate";
  const LogOptions options(identity, 0);
  identity.replace(0, 2, "xx");
  EXPECT_STREQ(log.mIdentity, "fwupdate");
}

TEST(LogOptions, KeepsTheFirstIdentityOfTheProcess) {
  LogRecorder recorder;
  { const LogOptions options("fwupdate", 0x20); }
  { const LogOptions options("another", 3); }
  EXPECT_THAT(recorder.log().openings(),
              ElementsAre(Opening{"fwupdate", 0x20, 8}, Opening{"fwupdate", 3, 8}));
}

}  // namespace
