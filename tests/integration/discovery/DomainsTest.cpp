// Domains beside the default one.
#include "DiscoveryTest.h"

namespace {

using testing::ElementsAre;

class DomainsTest : public DiscoveryTest, public testing::WithParamInterface<bool> {
 protected:
  DomainsTest() {
    if (GetParam()) startDaemon();
  }
};

TEST_P(DomainsTest, PrinterInADomainThatTheNetworkNamesIsFound) {
  auto printer = announce({"--domain", "office.local", "Printer"});
  search();
  ASSERT_TRUE(waitFor("resolved Printer"));
  EXPECT_EQ(recorder->domain, "office.local");
  printer->withdraw();
  ASSERT_TRUE(waitFor("removed Printer"));
  EXPECT_THAT(told(), ElementsAre("added Printer", "resolved Printer", "removed Printer"));
}

TEST_P(DomainsTest, DomainThatIsNamedLaterIsFound) {
  auto other = announce({"Other"});
  find("Other");
  auto printer = announce({"--domain", "office.local", "Printer"});
  ASSERT_TRUE(waitFor("resolved Printer"));
}

INSTANTIATE_TEST_SUITE_P(With, DomainsTest, testing::Bool(), stackName);

}  // namespace
