// Which domains are browsed, and what is told of their services.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "FakeResponder.h"
#include "platform/avahi/DomainBrowses.h"

namespace {

using platform::DomainBrowses;
using platform::Place;
using platform::ServiceName;
using testing::ElementsAre;
using testing::IsEmpty;

class DomainBrowsesTest : public testing::Test, public platform::BrowseListener {
 protected:
  void appeared(const ServiceName& service, Place) override {
    told.push_back("appeared " + service.domain);
  }
  void disappeared(const ServiceName& service, Place) override {
    told.push_back("disappeared " + service.domain);
  }
  void allForNow() override { told.emplace_back("all for now"); }
  void browsingFailed() override { told.emplace_back("failed"); }

  static ServiceName serviceIn(const std::string& domain) {
    return {"Printer", "_pdl-datastream._tcp", domain};
  }

  FakeResponder responder;
  std::vector<std::string> told;
};

TEST_F(DomainBrowsesTest, DefaultDomainAndThoseThatAreNamedAreBrowsed) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  EXPECT_TRUE(browses.started());
  responder.domains->domainAppeared("office.example");
  EXPECT_THAT(responder.browses, ElementsAre("local", "office.example"));
}

TEST_F(DomainBrowsesTest, DefaultDomainIsBrowsedOnce) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  responder.domains->domainAppeared("Local.");
  EXPECT_THAT(responder.browses, ElementsAre("local"));
}

// A label is never longer than 63 bytes, and what a backslash escapes has to follow it.
TEST_F(DomainBrowsesTest, WhatIsNoDomainIsNotBrowsed) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  for (const std::string& domain : {std::string(64, 'x') + ".example", std::string("office\\")}) {
    responder.domains->domainAppeared(domain);
    responder.domains->domainDisappeared(domain);
  }
  EXPECT_THAT(responder.browses, ElementsAre("local"));
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(DomainBrowsesTest, GivenDomainIsBrowsedAlone) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "office.example", *this);
  EXPECT_THAT(responder.browses, ElementsAre("office.example"));
  EXPECT_EQ(responder.domains, nullptr);
}

TEST_F(DomainBrowsesTest, DomainIsBrowsedAsLongAsSomebodyNamesIt) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  responder.domains->domainAppeared("office.example");
  responder.domains->domainAppeared("office.example");
  EXPECT_THAT(responder.browses, ElementsAre("local", "office.example"));
  responder.domains->domainDisappeared("office.example");
  EXPECT_THAT(responder.browses, ElementsAre("local", "office.example"));
  responder.domains->domainDisappeared("office.example");
  EXPECT_THAT(responder.browses, ElementsAre("local"));
}

TEST_F(DomainBrowsesTest, ServicesGoWithTheirDomain) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  responder.domains->domainAppeared("office.example");
  auto& office = *responder.listeners.at("office.example");
  office.appeared(serviceIn("office.example"), Place{2, AVAHI_PROTO_INET});
  office.appeared(serviceIn("office.example"), Place{3, AVAHI_PROTO_INET});
  office.disappeared(serviceIn("office.example"), Place{2, AVAHI_PROTO_INET});
  told.clear();
  responder.domains->domainDisappeared("office.example");
  EXPECT_THAT(told, ElementsAre("disappeared office.example"));
}

TEST_F(DomainBrowsesTest, OnlyTheDefaultDomainFailsOrIsComplete) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  responder.domains->domainAppeared("office.example");
  responder.listeners.at("office.example")->allForNow();
  responder.listeners.at("office.example")->browsingFailed();
  EXPECT_THAT(told, IsEmpty());
  responder.listeners.at("local")->allForNow();
  responder.listeners.at("local")->browsingFailed();
  EXPECT_THAT(told, ElementsAre("all for now", "failed"));
}

TEST_F(DomainBrowsesTest, NobodyCanNameDomainsWithoutEnd) {
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  for (int i = 0; i < 100; ++i) responder.domains->domainAppeared("d" + std::to_string(i));
  EXPECT_EQ(responder.browses.size(), 17u);
}

TEST_F(DomainBrowsesTest, RefusedDefaultDomainIsNoStart) {
  responder.refuses = true;
  const DomainBrowses browses(responder, "_pdl-datastream._tcp", "", *this);
  EXPECT_FALSE(browses.started());
}

}  // namespace
