// What the program relies on when it resolves a service, whoever finds it.
#include <gmock/gmock.h>

#include "BrowserRecorder.h"
#include "ServiceDiscoveryContract.h"

namespace {

using platform::StreamError;
using std::chrono::milliseconds;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

class ServiceResolve : public ServiceDiscoveryContract {
 protected:
  // Until the service is added, which is not resolved by itself.
  void find(const AnnouncedService& service) {
    mWorld->announce(service);
    ASSERT_TRUE(mRecorder.search());
    ASSERT_TRUE(mWorld->runUntil([&] { return mRecorder.wasTold("added " + service.name); }));
  }

  bool runUntilTold(std::size_t lines) {
    return mWorld->runUntil([this, lines] { return mRecorder.told.size() == lines; });
  }

  static void resolved(platform::NetService*, StreamError* error, void* info) {
    static_cast<ServiceResolve*>(info)->mOutcomes.push_back(error->error);
  }

  bool resolve(double seconds) {
    mRecorder.service->setClient(resolved, this);
    mRecorder.service->schedule();
    return mRecorder.service->resolveWithTimeout(seconds, &mError);
  }

  StreamError mError;
  std::vector<std::int32_t> mOutcomes;
  BrowserRecorder mRecorder{mWorld->discovery()};
};

TEST_P(ServiceResolve, TxtRecordIsInWireFormAndInOrder) {
  mRecorder.resolves = true;
  find({"Printer", {"b=2", "a=1", "flag", "e=", std::string("z=\0\xFFz", 5)}});
  ASSERT_TRUE(runUntilTold(2));
  EXPECT_EQ(mRecorder.txt, (Bytes{3, 'b', '=', '2',        //
                                  3, 'a', '=', '1',        //
                                  4, 'f', 'l', 'a',  'g',  //
                                  2, 'e', '=',             //
                                  5, 'z', '=', 0x00, 0xFF, 'z'}));
}

TEST_P(ServiceResolve, TxtRecordWithoutStringsIsOneEmptyString) {
  mRecorder.resolves = true;
  find({"Printer"});
  ASSERT_TRUE(runUntilTold(2));
  EXPECT_EQ(mRecorder.txt, Bytes{0});
}

TEST_P(ServiceResolve, FirstAddressIsAnIPv4Record) {
  mRecorder.resolves = true;
  AnnouncedService service{"Printer"};
  service.port = 0x238D;
  find(service);
  ASSERT_TRUE(runUntilTold(2));
  const Bytes address = mRecorder.addresses.at(0);
  ASSERT_EQ(address.size(), 16u);
  EXPECT_THAT(Bytes(address.begin(), address.begin() + 4), ElementsAre(16, 2, 0x23, 0x8D));
  EXPECT_EQ(address[4], 10);
  EXPECT_EQ(address[5], 91);
  EXPECT_EQ(address[7], 2);
  EXPECT_EQ(Bytes(address.begin() + 8, address.end()), Bytes(8, 0));
}

TEST_P(ServiceResolve, OutcomeIsToldOnceAndNotInsideTheCall) {
  find({"Printer"});
  ASSERT_TRUE(resolve(30));
  EXPECT_THAT(mOutcomes, ElementsAre());
  ASSERT_TRUE(mWorld->runUntil([&] { return !mOutcomes.empty(); }));
  settle();
  EXPECT_THAT(mOutcomes, ElementsAre(0));
}

TEST_P(ServiceResolve, NothingIsKnownBeforeTheResolve) {
  find({"Printer", {"a=1"}});
  EXPECT_EQ(mRecorder.service->txtData(), nullptr);
  EXPECT_EQ(mRecorder.service->addresses(), nullptr);
}

TEST_P(ServiceResolve, SilentServiceTimesOut) {
  mRecorder.resolves = true;
  mRecorder.timeoutSeconds = 0.7;
  AnnouncedService silent{"Silent"};
  silent.answers = false;
  find(silent);
  mWorld->runFor(milliseconds(500));
  EXPECT_THAT(mRecorder.told, ElementsAre("added Silent"));
  mWorld->runFor(milliseconds(400));
  EXPECT_THAT(mRecorder.told, ElementsAre("added Silent", "failed Silent 10 -72007"));
}

TEST_P(ServiceResolve, ServiceCanBeResolvedAgain) {
  find({"Printer"});
  ASSERT_TRUE(resolve(30));
  ASSERT_TRUE(mWorld->runUntil([&] { return mOutcomes.size() == 1; }));
  ASSERT_TRUE(resolve(30));
  EXPECT_TRUE(mWorld->runUntil([&] { return mOutcomes.size() == 2; }));
}

TEST_P(ServiceResolve, SecondResolveIsRefusedWhileTheFirstRuns) {
  AnnouncedService silent{"Silent"};
  silent.answers = false;
  find(silent);
  ASSERT_TRUE(resolve(0.5));
  EXPECT_FALSE(resolve(0.5));
  EXPECT_NE(mError.error, 0);
  settle();
  EXPECT_THAT(mOutcomes, ElementsAre(-72007));
}

TEST_P(ServiceResolve, CancelledResolveIsNotTold) {
  find({"Printer"});
  ASSERT_TRUE(resolve(0.5));
  mRecorder.service->cancel();
  settle();
  EXPECT_THAT(mOutcomes, ElementsAre());
}

TEST_P(ServiceResolve, ResolveOfUnscheduledServiceIsNotTold) {
  find({"Printer"});
  ASSERT_TRUE(resolve(0.5));
  mRecorder.service->unschedule();
  settle();
  EXPECT_THAT(mOutcomes, ElementsAre());
}

TEST_P(ServiceResolve, ResolveWithoutClientIsNotTold) {
  find({"Printer"});
  ASSERT_TRUE(resolve(0.5));
  mRecorder.service->setClient(nullptr, nullptr);
  settle();
  EXPECT_THAT(mOutcomes, ElementsAre());
}

TEST_P(ServiceResolve, ServiceThatGoesIsNotResolvedAfterwards) {
  AnnouncedService silent{"Silent"};
  silent.answers = false;
  find(silent);
  ASSERT_TRUE(resolve(3));
  mWorld->withdraw("Silent");
  ASSERT_TRUE(mWorld->runUntil([&] { return mRecorder.wasTold("removed Silent"); }));
  mWorld->runFor(milliseconds(3500));
  EXPECT_THAT(mOutcomes, ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(Every, ServiceResolve, testing::ValuesIn(discoveryImplementations()),
                         nameOf);

}  // namespace
