// Errors that the platform tells, and callbacks that it must not make.
#include <sstream>

#include "BonjourDeviceFinderFixture.h"
#include "Log.h"

namespace {

using platform::StreamError;

class BonjourDeviceFinderErrorsTest : public BonjourDeviceFinderFixture {
 protected:
  static std::string shownPointer(const void* pointer) {
    std::ostringstream out;
    out << pointer;
    return out.str();
  }

  StreamError none;
  FakeNetService service{services.script(), printer("Printer")};
};

using BonjourDeviceFinderDeathTest = BonjourDeviceFinderErrorsTest;

TEST_F(BonjourDeviceFinderErrorsTest, NoErrorPasses) {
  EXPECT_FALSE(BonjourDeviceFinder::checkForError(&none, &*finder, &service));
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(BonjourDeviceFinderErrorsTest, DomainWithoutCodeIsNoError) {
  StreamError domainOnly{10, 0};
  EXPECT_FALSE(BonjourDeviceFinder::checkForError(&domainOnly, &*finder, &service));
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(BonjourDeviceFinderErrorsTest, ErrorIsLoggedInDecimalAndHexadecimal) {
  StreamError error{10, -72000};
  EXPECT_TRUE(BonjourDeviceFinder::checkForError(&error, &*finder, &service));
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: domain=10 error code=-72000 [0xfffee6c0]"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, PositiveErrorCodesAreLoggedAsTheyAre) {
  StreamError error{1, 61};
  Log<3>() << std::hex;
  EXPECT_TRUE(BonjourDeviceFinder::checkForError(&error, &*finder, &service));
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: domain=1 error code=61 [0x3d]"}}));
  Log<3>() << 255 << std::flush;
  EXPECT_EQ(takeEntries(), (Entries{{3, "255"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, NullObjectIsAnError) {
  EXPECT_TRUE(BonjourDeviceFinder::checkForError(&none, &*finder, nullptr));
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: a mandatory pointer was null info=" +
                             shownPointer(&*finder) + " service=<null>"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, NullInfoIsAnError) {
  EXPECT_TRUE(BonjourDeviceFinder::checkForError(&none, nullptr, &service));
  EXPECT_EQ(takeEntries(), (Entries{{3,
                                     "Bonjour discovery error: a mandatory pointer was null info=0 "
                                     "service=Printer._pdl-datastream._tcp.local"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, ErrorAndNullObjectAreBothLogged) {
  start();
  services.fail({platform::kStreamErrorDomainNetServices, platform::kNetServicesErrorUnknown});
  run();
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: domain=10 error code=-72000 [0xfffee6c0]"},
                     {3, "Bonjour discovery error: a mandatory pointer was null info=" +
                             shownPointer(&*finder) + " service=<null>"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, BrowseEventWithErrorIsDropped) {
  StreamError error{10, -72000};
  BonjourDeviceFinder::serviceBrowseCallback(nullptr, 0, &service, &error, &*finder);
  EXPECT_FALSE(service.isResolving());
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: domain=10 error code=-72000 [0xfffee6c0]"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, RemovalWithErrorIsDropped) {
  start();
  services.announce(printer("Printer"));
  run();
  takeEntries();
  StreamError error{10, -72000};
  BonjourDeviceFinder::serviceBrowseCallback(nullptr, 8, &service, &error, &*finder);
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 192.0.2.7"});
  EXPECT_EQ(takeEntries().size(), 1u);
}

TEST_F(BonjourDeviceFinderErrorsTest, ResolvedServiceThatIsNullIsDropped) {
  BonjourDeviceFinder::serviceResolvedCallback(nullptr, &none, &*finder);
  EXPECT_EQ(takeEntries(),
            (Entries{{3, "Bonjour discovery error: a mandatory pointer was null info=" +
                             shownPointer(&*finder) + " service=<null>"}}));
}

TEST_F(BonjourDeviceFinderErrorsTest, BrowsingGoesOnAfterAnError) {
  start();
  services.fail({10, -72000});
  services.announce(printer("Printer"));
  run();
  EXPECT_EQ(rows(), Lines{"1 Printer Bonjour 192.0.2.7"});
}

// The line is the assertion's own.
constexpr const char* kPlace =
    ", file Host/installkit/osx/fwupdate/BonjourDeviceFinder, line [0-9]+\\.\n$";

TEST_F(BonjourDeviceFinderDeathTest, BrowseCallbackNeedsItsFinder) {
  EXPECT_DEATH(
      BonjourDeviceFinder::serviceBrowseCallback(nullptr, 0, &service, &none, nullptr),
      std::string("^Assertion failed: \\(info != 0\\), function serviceBrowseCallback") + kPlace);
}

TEST_F(BonjourDeviceFinderDeathTest, ResolveCallbackNeedsItsFinder) {
  EXPECT_DEATH(
      BonjourDeviceFinder::serviceResolvedCallback(&service, &none, nullptr),
      std::string("^Assertion failed: \\(info != 0\\), function serviceResolvedCallback") + kPlace);
}

TEST_F(BonjourDeviceFinderDeathTest, BrowseCallbackNeedsAnErrorRecord) {
  EXPECT_DEATH(
      BonjourDeviceFinder::serviceBrowseCallback(nullptr, 0, &service, nullptr, &*finder),
      std::string("^Assertion failed: \\(streamError != 0\\), function checkForError") + kPlace);
}

TEST_F(BonjourDeviceFinderDeathTest, ResolveCallbackNeedsAnErrorRecord) {
  EXPECT_DEATH(
      BonjourDeviceFinder::serviceResolvedCallback(&service, nullptr, &*finder),
      std::string("^Assertion failed: \\(streamError != 0\\), function checkForError") + kPlace);
}

}  // namespace
