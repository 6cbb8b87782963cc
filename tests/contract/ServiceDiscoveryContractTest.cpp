// What the program relies on in every service discovery, the double included.
#include <gmock/gmock.h>

#include "BrowserRecorder.h"
#include "ServiceDiscoveryContract.h"

namespace {

using platform::StreamError;
using platform::Text;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// Browsing.

TEST_P(ServiceDiscoveryContract, ServicesAreToldOnceWhetherTheyCameBeforeOrAfter) {
  mWorld->announce({"Before"});
  BrowserRecorder recorder(mWorld->discovery());
  ASSERT_TRUE(recorder.search());
  EXPECT_THAT(recorder.told, IsEmpty());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.wasTold("added Before"); }));
  mWorld->announce({"After"});
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.wasTold("added After"); }));
  settle();
  EXPECT_THAT(recorder.told, ElementsAre("added Before", "added After"));
}

TEST_P(ServiceDiscoveryContract, ServiceHasNameTypeAndDomain) {
  mWorld->announce({"Printer \xC3\xBC 1.2"});
  BrowserRecorder recorder(mWorld->discovery());
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return !recorder.told.empty(); }));
  EXPECT_EQ(recorder.name, "Printer \xC3\xBC 1.2");
  EXPECT_EQ(recorder.type, "_pdl-datastream._tcp");
  EXPECT_EQ(recorder.domain, "local");
  EXPECT_NE(recorder.description.find("Printer \xC3\xBC 1.2"), std::string::npos);
  EXPECT_NE(recorder.description.find("_pdl-datastream._tcp"), std::string::npos);
  EXPECT_NE(recorder.description.find("local"), std::string::npos);
}

TEST_P(ServiceDiscoveryContract, OtherTypesAreNotTold) {
  AnnouncedService other{"Other"};
  other.type = "_ipp._tcp";
  mWorld->announce(other);
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  ASSERT_TRUE(recorder.search());
  settle();
  EXPECT_THAT(recorder.told, ElementsAre("added Printer"));
}

TEST_P(ServiceDiscoveryContract, ServiceThatGoesIsToldOnceWithItsOwnObject) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return !recorder.told.empty(); }));
  const platform::NetService* const added = recorder.service;
  settle();
  mWorld->withdraw("Printer");
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() > 1; }));
  EXPECT_EQ(recorder.service, added);
  settle();
  EXPECT_THAT(recorder.told, ElementsAre("added Printer", "removed Printer"));
}

TEST_P(ServiceDiscoveryContract, ServiceThatComesBackIsToldAgain) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() == 1; }));
  mWorld->withdraw("Printer");
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() == 2; }));
  mWorld->announce({"Printer"});
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() == 3; }));
  EXPECT_THAT(recorder.told, ElementsAre("added Printer", "removed Printer", "added Printer"));
}

TEST_P(ServiceDiscoveryContract, BrowsersAreIndependent) {
  mWorld->announce({"Printer"});
  BrowserRecorder first(mWorld->discovery());
  BrowserRecorder second(mWorld->discovery());
  ASSERT_TRUE(first.search());
  ASSERT_TRUE(second.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return first.told.size() + second.told.size() == 2; }));
  first.browser.reset();
  mWorld->withdraw("Printer");
  ASSERT_TRUE(mWorld->runUntil([&] { return second.told.size() == 2; }));
  EXPECT_THAT(first.told, ElementsAre("added Printer"));
  EXPECT_THAT(second.told, ElementsAre("added Printer", "removed Printer"));
}

TEST_P(ServiceDiscoveryContract, UnscheduledBrowserTellsLater) {
  mWorld->announce({"Printer"});
  mWorld->announce({"Other"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.browser->unschedule();
  ASSERT_TRUE(recorder.search());
  settle();
  EXPECT_THAT(recorder.told, IsEmpty());
  recorder.browser->schedule();
  EXPECT_THAT(recorder.told, IsEmpty());
  settle();
  EXPECT_THAT(recorder.told, UnorderedElementsAre("added Printer", "added Other"));
}

TEST_P(ServiceDiscoveryContract, WrongTypeCannotBeSearched) {
  BrowserRecorder recorder(mWorld->discovery());
  for (const Text& type : {Text(), Text::fromUtf8(""), Text::fromUtf8("printers")}) {
    StreamError error;
    EXPECT_FALSE(recorder.browser->searchForServices(Text::fromUtf8(""), type, &error));
    EXPECT_NE(error.error, 0);
  }
  EXPECT_TRUE(recorder.search());
}

TEST_P(ServiceDiscoveryContract, SecondSearchIsRefusedWhileTheFirstRuns) {
  BrowserRecorder recorder(mWorld->discovery());
  EXPECT_TRUE(recorder.search());
  EXPECT_FALSE(recorder.search());
}

// The end of browsing.

TEST_P(ServiceDiscoveryContract, NothingIsToldAfterTheSearchIsStopped) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.resolves = true;
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.wasTold("added Printer"); }));
  StreamError error;
  recorder.browser->stopSearch(&error);
  recorder.told.clear();
  mWorld->announce({"Other"});
  mWorld->withdraw("Printer");
  settle();
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_P(ServiceDiscoveryContract, StoppedSearchCanBeStartedAgain) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() == 1; }));
  StreamError error;
  recorder.browser->stopSearch(&error);
  EXPECT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() == 2; }));
  EXPECT_THAT(recorder.told, ElementsAre("added Printer", "added Printer"));
}

TEST_P(ServiceDiscoveryContract, NothingIsToldAfterInvalidation) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.resolves = true;
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.wasTold("added Printer"); }));
  recorder.told.clear();
  recorder.browser->invalidate();
  mWorld->announce({"Other"});
  settle();
  EXPECT_THAT(recorder.told, IsEmpty());
  EXPECT_FALSE(recorder.search());
}

TEST_P(ServiceDiscoveryContract, NothingIsToldAfterDestruction) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.resolves = true;
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.wasTold("added Printer"); }));
  recorder.told.clear();
  recorder.browser.reset();
  settle();
  EXPECT_THAT(recorder.told, IsEmpty());
}

TEST_P(ServiceDiscoveryContract, BrowserMayBeDestroyedInItsCallback) {
  mWorld->announce({"Printer"});
  mWorld->announce({"Other"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.destroysBrowserWhen = "added Printer";
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.browser == nullptr; }));
  settle();
  EXPECT_EQ(recorder.told.back(), "added Printer");
}

TEST_P(ServiceDiscoveryContract, BrowserMayBeDestroyedInTheCallbackOfRemoval) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.destroysBrowserWhen = "removed Printer";
  ASSERT_TRUE(recorder.search());
  ASSERT_TRUE(mWorld->runUntil([&] { return recorder.told.size() == 1; }));
  mWorld->withdraw("Printer");
  EXPECT_TRUE(mWorld->runUntil([&] { return recorder.browser == nullptr; }));
}

TEST_P(ServiceDiscoveryContract, BrowserMayBeDestroyedInTheCallbackOfResolve) {
  mWorld->announce({"Printer"});
  BrowserRecorder recorder(mWorld->discovery());
  recorder.resolves = true;
  recorder.destroysBrowserWhen = "resolved Printer";
  ASSERT_TRUE(recorder.search());
  EXPECT_TRUE(mWorld->runUntil([&] { return recorder.browser == nullptr; }));
  settle();
}

INSTANTIATE_TEST_SUITE_P(Every, ServiceDiscoveryContract,
                         testing::ValuesIn(discoveryImplementations()), nameOf);

}  // namespace
