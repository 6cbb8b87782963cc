// What the crowd answers to whom, and when.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "Responder.h"

namespace {

using crowd::Asker;
using crowd::Datagram;
using crowd::Responder;
using crowd::Time;
using dns::Bytes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Time kStart{1000};
constexpr Time kAnswered{120};  // the longest pause

const dns::Name kType{"_pdl-datastream", "_tcp", "local"};
const dns::Name kFirst{"Printer 0001", "_pdl-datastream", "_tcp", "local"};
const dns::Name kFirstHost{"crowd-0001", "local"};

// 12: the name of Printer 0001 or of its host, then what names point to.
Bytes operator+(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Bytes text(const char* characters) {
  const std::string bytes(characters);
  return {bytes.begin(), bytes.end()};
}

class ResponderTest : public testing::Test {
 protected:
  explicit ResponderTest(const Responder::Options& options = {2, 1, true, false, {0}})
      : responder(options) {}

  void ask(std::vector<dns::Question> questions, std::vector<dns::Record> known = {},
           std::uint16_t flags = 0, const Asker& asker = {"asker", true}) {
    dns::MessageWriter packet(0x1234, flags);
    for (const dns::Question& question : questions) packet.addQuestion(question);
    for (const dns::Record& record : known) packet.addRecord(dns::Section::Answers, record);
    responder.heard(0, asker, packet.bytes(), now);
  }

  // Everything until then, each packet in words.
  std::vector<std::string> saidAfter(Time time) {
    now += time;
    std::vector<std::string> said;
    for (const Datagram& datagram : responder.takeDue(now)) said.push_back(inWords(datagram));
    return said;
  }

  // The names of its answers, "to" whom if not to everybody, and at which place if not the first.
  static std::string inWords(const Datagram& datagram) {
    const dns::Message message = dns::parse(datagram.bytes);
    std::string words;
    for (const dns::Record& record : message.answers) {
      const dns::Name& name = record.target.empty() ? record.name : record.target;
      words += std::to_string(record.type) + " " + name.at(0);
      if (record.type == dns::kTypeA) {
        for (const std::uint8_t byte : record.data) words += "." + std::to_string(byte);
      }
      words += record.timeToLive == 0 ? " gone, " : ", ";
    }
    if (datagram.to) words += "to " + datagram.to->address;
    if (datagram.place != 0) words += "at " + std::to_string(datagram.place);
    return words;
  }

  static dns::Record known(const std::string& name, std::uint32_t timeToLive) {
    dns::Name target{name};
    target.insert(target.end(), kType.begin(), kType.end());
    return {kType, dns::kTypePtr, dns::kClassIn, timeToLive, {}, target};
  }

  Responder responder;
  Time now = kStart;
};

class TerseResponderTest : public ResponderTest {
 protected:
  TerseResponderTest() : ResponderTest({2, 1, false, false, {0}}) {}
};

class PrintServerTest : public ResponderTest {
 protected:
  PrintServerTest() : ResponderTest({100, 100, false, true, {0, 0}}) {}
};

// Two protocols on each of two links.
class TwoLinksResponderTest : public ResponderTest {
 protected:
  TwoLinksResponderTest() : ResponderTest({2, 1, true, false, {0, 0, 1, 1}}) {}
};

TEST_F(ResponderTest, AnswerToTheTypeHasAllRecordsOfOneService) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}}, {known("Other 0002", 4500)});
  now += kAnswered;
  const auto datagrams = responder.takeDue(now);
  ASSERT_EQ(datagrams.size(), 1u);
  EXPECT_EQ(datagrams[0].place, 0u);
  EXPECT_FALSE(datagrams[0].to);
  EXPECT_EQ(datagrams[0].bytes,
            Bytes({0, 0, 0x84, 0, 0, 0, 0, 1, 0, 0, 0, 4}) +                         // one and four
                Bytes({15}) + text("_pdl-datastream") + Bytes({4}) + text("_tcp") +  // 12, 28
                Bytes({5}) + text("local") +                                         // 33
                Bytes({0, 0, 12, 0, 1, 0, 0, 0x11, 0x94, 0, 15}) +                   // PTR, 4500 s
                Bytes({12}) + text("Printer 0001") + Bytes({0xC0, 12}) +             // 50
                Bytes({0xC0, 50, 0, 33, 0x80, 1, 0, 0, 0, 120, 0, 19}) +             // SRV, 120 s
                Bytes({0, 0, 0, 0, 0x23, 0x8C, 10}) + text("crowd-0001") +           // 83
                Bytes({0xC0, 33}) +                                                  //
                Bytes({0xC0, 50, 0, 16, 0x80, 1, 0, 0, 0x11, 0x94, 0, 209}) +        // TXT, 4500 s
                Bytes({9}) + text("txtvers=1") + Bytes({8}) + text("qtotal=1") +     //
                Bytes({16}) + text("ty=Veltra KX350T") +                             //
                Bytes({11}) + text("note=Room 1") +                                  //
                Bytes({33}) + text("adminurl=http://crowd-0001.local/") +            //
                Bytes({67}) +                                                        //
                text("pdl=application/octet-stream,text/plain,image/jpeg,image/pwg-raster") +
                Bytes({11}) + text("priority=50") + Bytes({7}) + text("Color=T") +      //
                Bytes({8}) + text("Duplex=F") + Bytes({14}) + text("usb_MFG=Veltra") +  //
                Bytes({14}) + text("usb_MDL=KX350T") +                                  //
                Bytes({0xC0, 83, 0, 1, 0x80, 1, 0, 0, 0, 120, 0, 4, 10, 100, 0, 1}) +   // A
                Bytes({0xC0, 83, 0, 28, 0x80, 1, 0, 0, 0, 120, 0, 16}) +                // AAAA
                Bytes({0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0, 0, 1}));
}

TEST_F(TerseResponderTest, AnswerToTheTypeIsTheNameOnly) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}});
  now += kAnswered;
  const auto datagrams = responder.takeDue(now);
  ASSERT_EQ(datagrams.size(), 2u);
  for (const Datagram& datagram : datagrams) EXPECT_EQ(datagram.bytes[11], 0);  // additional
}

TEST_F(PrintServerTest, NamesShareThePacketsThatTheyFill) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}});
  now += kAnswered;
  std::size_t names = 0;
  const auto datagrams = responder.takeDue(now);
  ASSERT_EQ(datagrams.size(), 2u);
  for (const Datagram& datagram : datagrams) {
    EXPECT_LE(datagram.bytes.size(), 1452u);
    EXPECT_EQ(datagram.place, 0u);
    names += dns::parse(datagram.bytes).answers.size();
  }
  EXPECT_EQ(names, 100u);
}

TEST_F(PrintServerTest, AnswersForOneAskerAndOtherPlacesStayApart) {
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn | dns::kTopBit}});
  responder.announce(responder.member(2), now);
  EXPECT_THAT(saidAfter(Time(0)),
              ElementsAre("1 crowd-0001.10.100.0.1, to asker",
                          "1 crowd-0001.10.100.0.1, 28 crowd-0001, 12 Printer 0002, 33 crowd-0002, "
                          "16 Printer 0002, 1 crowd-0002.10.100.0.2, 28 crowd-0002, ",
                          "12 Printer 0002, 33 crowd-0002, 16 Printer 0002, "
                          "1 crowd-0002.10.100.0.2, 28 crowd-0002, at 1"));
}

TEST_F(ResponderTest, ServicesAnswerAfterPausesOfTheirOwn) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(19)), IsEmpty());
  EXPECT_GE(*responder.nextDue(), kStart + Time(20));
  EXPECT_THAT(saidAfter(Time(101)), SizeIs(2));
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, WhatIsKnownForLongIsNotSaid) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}},
      {known("Printer 0001", 2250), known("Other 0002", 2249)});
  EXPECT_THAT(saidAfter(kAnswered), ElementsAre("12 Other 0002, "));
}

TEST_F(ResponderTest, KnownAnswersMayComeInSeveralPackets) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}}, {}, dns::kFlagTruncated);
  EXPECT_THAT(saidAfter(Time(400)), IsEmpty());
  ask({}, {known("Printer 0001", 4500)}, dns::kFlagTruncated);
  EXPECT_THAT(saidAfter(Time(400)), IsEmpty());
  ask({}, {known("Other 0002", 4500)});
  EXPECT_THAT(saidAfter(kAnswered), IsEmpty());
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, KnownAnswersOfOneAskerAreNotThoseOfAnother) {
  ask({{kType, dns::kTypePtr, dns::kClassIn}}, {}, dns::kFlagTruncated);
  ask({}, {known("Printer 0001", 4500), known("Other 0002", 4500)}, 0, {"other", true});
  saidAfter(Time(450));
  EXPECT_THAT(saidAfter(kAnswered), SizeIs(2));
}

TEST_F(ResponderTest, RecordsOfOneServiceAreAnsweredAtOnceAndTogether) {
  ask({{kFirst, dns::kTypeSrv, dns::kClassIn}, {kFirst, dns::kTypeTxt, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("33 crowd-0001, 16 Printer 0001, "));
  EXPECT_THAT(saidAfter(seconds(5)), IsEmpty());
}

TEST_F(ResponderTest, LetterCaseOfNamesDoesNotCount) {
  ask({{{"CROWD-0001", "Local"}, dns::kTypeA, dns::kClassAny}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("1 crowd-0001.10.100.0.1, "));
}

TEST_F(ResponderTest, QuestionsForOthersAreNotAnswered) {
  ask({{{"crowd-0003", "local"}, dns::kTypeA, dns::kClassIn},
       {kFirstHost, dns::kTypeSrv, dns::kClassIn},
       {kFirst, dns::kTypeA, dns::kClassIn},
       {kFirstHost, dns::kTypeA, 3},
       {{"_ipp", "_tcp", "local"}, dns::kTypePtr, dns::kClassIn}});
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, WhatIsNoQuestionIsNotAnswered) {
  responder.heard(0, {"asker", true}, Bytes{0, 0, 0}, now);
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}}, {}, dns::kFlagResponse);
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, NothingIsToldToEverybodyTwiceInASecond) {
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), SizeIs(1));
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(999)), IsEmpty());
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(1)), SizeIs(1));
}

TEST_F(ResponderTest, QuestionForAUnicastAnswerGetsOne) {
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn | dns::kTopBit}});
  EXPECT_THAT(saidAfter(Time(0)),
              ElementsAre("1 crowd-0001.10.100.0.1, ", "1 crowd-0001.10.100.0.1, to asker"));
}

TEST_F(ResponderTest, AskerWithoutMulticastGetsItsQuestionBackAndNothingToKeep) {
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}}, {}, 0, {"asker", false});
  const auto datagrams = responder.takeDue(now);
  ASSERT_EQ(datagrams.size(), 1u);
  EXPECT_EQ(datagrams[0].to->address, "asker");
  EXPECT_EQ(datagrams[0].bytes,
            Bytes({0x12, 0x34, 0x84, 0, 0, 1, 0, 1, 0, 0, 0, 1, 10}) + text("crowd-0001") +
                Bytes({5}) + text("local") + Bytes({0, 0, 1, 0, 1}) +
                Bytes({0xC0, 12, 0, 1, 0, 1, 0, 0, 0, 10, 0, 4, 10, 100, 0, 1}) +
                Bytes({0xC0, 12, 0, 28, 0, 1, 0, 0, 0, 10, 0, 16}) +
                Bytes({0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0, 0, 1}));
}

TEST_F(ResponderTest, ServiceIsAnnouncedTwiceWithAllItHas) {
  responder.announce(responder.member(1), now);
  const std::string all =
      "12 Printer 0001, 33 crowd-0001, 16 Printer 0001, "
      "1 crowd-0001.10.100.0.1, 28 crowd-0001, ";
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre(all));
  EXPECT_THAT(saidAfter(Time(999)), IsEmpty());
  EXPECT_THAT(saidAfter(Time(1)), ElementsAre(all));
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, ServiceThatIsWithdrawnSaysGoodbyeAndIsSilent) {
  responder.announce(responder.member(1), now);
  saidAfter(Time(0));
  responder.withdraw(responder.member(1), now);
  EXPECT_THAT(saidAfter(Time(0)),
              ElementsAre("12 Printer 0001 gone, 33 crowd-0001 gone, 16 Printer 0001 gone, "
                          "1 crowd-0001.10.100.0.1 gone, 28 crowd-0001 gone, "));
  ask({{kType, dns::kTypePtr, dns::kClassIn}, {kFirst, dns::kTypeSrv, dns::kClassIn}},
      {known("Other 0002", 4500)});
  EXPECT_THAT(saidAfter(seconds(5)), IsEmpty());
  ask({{kType, dns::kTypePtr, dns::kClassIn}, {kFirst, dns::kTypeSrv, dns::kClassIn}},
      {known("Other 0002", 4500)});
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, SilentServiceTellsItsNameOnly) {
  responder.member(1).silent = true;
  ask({{kType, dns::kTypePtr, dns::kClassIn},
       {kFirst, dns::kTypeSrv, dns::kClassIn},
       {kFirstHost, dns::kTypeA, dns::kClassIn}},
      {known("Other 0002", 4500)});
  now += kAnswered;
  const auto datagrams = responder.takeDue(now);
  ASSERT_EQ(datagrams.size(), 1u);
  EXPECT_EQ(inWords(datagrams[0]), "12 Printer 0001, ");
  EXPECT_EQ(datagrams[0].bytes[11], 0);
}

TEST_F(ResponderTest, LateServiceTellsTheRestInItsTime) {
  responder.member(1).late = seconds(20);
  ask({{kFirst, dns::kTypeSrv, dns::kClassIn}});
  EXPECT_THAT(saidAfter(seconds(10)), IsEmpty());
  ask({{kFirst, dns::kTypeSrv, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(9999)), IsEmpty());
  EXPECT_THAT(saidAfter(Time(1)), ElementsAre("33 crowd-0001, "));
  now += seconds(1);
  ask({{kFirst, dns::kTypeSrv, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("33 crowd-0001, "));
}

TEST_F(ResponderTest, ServiceCanNameAnotherHost) {
  responder.member(1).namesAnotherHost = true;
  ask({{kFirst, dns::kTypeSrv, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("33 crowd-0002, "));
}

TEST_F(ResponderTest, MovingServiceHasAnotherAddressInEachAnswer) {
  responder.member(1).movesWhenAsked = true;
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("1 crowd-0001.10.102.0.1, "));
  ask({{kFirstHost, dns::kTypeA, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("1 crowd-0001.10.104.0.1, "));
}

TEST_F(ResponderTest, ServiceThatMovesTellsItsNewAddress) {
  responder.move(responder.member(1), now);
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("1 crowd-0001.10.102.0.1, 28 crowd-0001, "));
}

TEST_F(ResponderTest, FlappingServiceGoesAndComes) {
  responder.flap(responder.member(1), Time(5), now);
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre(testing::HasSubstr("12 Printer 0001 gone")));
  EXPECT_THAT(saidAfter(Time(4)), IsEmpty());
  EXPECT_THAT(saidAfter(Time(1)), ElementsAre(testing::HasSubstr("12 Printer 0001, ")));
  responder.flap(responder.member(1), Time(0), now);
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre(testing::HasSubstr("12 Printer 0001, ")));
  EXPECT_THAT(saidAfter(seconds(1)), ElementsAre(testing::HasSubstr("12 Printer 0001, ")));
  EXPECT_EQ(responder.nextDue(), std::nullopt);
}

TEST_F(ResponderTest, LongTextHasAPacketOfItsOwn) {
  responder.member(1).hasLongText = true;
  responder.announce(responder.member(1), now);
  EXPECT_THAT(saidAfter(Time(0)),
              ElementsAre("12 Printer 0001, 33 crowd-0001, ", "16 Printer 0001, ",
                          "1 crowd-0001.10.100.0.1, 28 crowd-0001, "));
  ask({{kFirst, dns::kTypeTxt, dns::kClassIn | dns::kTopBit}});
  const auto datagrams = responder.takeDue(now);
  ASSERT_EQ(datagrams.size(), 1u);
  const Bytes& bytes = datagrams[0].bytes;
  EXPECT_EQ(bytes.size(), 8255u);
  EXPECT_EQ(Bytes(bytes.begin() + 61, bytes.begin() + 63), (Bytes{0x20, 0}));
}

TEST_F(ResponderTest, LongTextThatHadNoRoomIsToldWhenItIsAskedFor) {
  responder.member(1).hasLongText = true;
  ask({{kType, dns::kTypePtr, dns::kClassIn}}, {known("Other 0002", 4500)});
  EXPECT_THAT(saidAfter(kAnswered), ElementsAre("12 Printer 0001, "));
  ask({{kFirst, dns::kTypeTxt, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("16 Printer 0001, "));
}

TEST_F(ResponderTest, TextThatIsMissingIsNotTold) {
  responder.member(1).hasText = false;
  ask({{kFirst, dns::kTypeSrv, dns::kClassIn}, {kFirst, dns::kTypeTxt, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("33 crowd-0001, "));
  ask({{kFirst, dns::kTypeTxt, dns::kClassIn}});
  EXPECT_THAT(saidAfter(Time(0)), IsEmpty());
}

TEST_F(TwoLinksResponderTest, WhatOnePlaceWasToldIsNewToTheOthers) {
  dns::MessageWriter question(0, 0);
  question.addQuestion({kFirstHost, dns::kTypeA, dns::kClassIn});
  for (const std::size_t place : {0u, 1u, 2u}) {
    responder.heard(place, {"asker", true}, question.bytes(), now);
  }
  EXPECT_THAT(saidAfter(Time(0)),
              ElementsAre("1 crowd-0001.10.100.0.1, ", "1 crowd-0001.10.100.0.1, at 1",
                          "1 crowd-0001.10.101.0.1, at 2"));
  responder.heard(3, {"asker", true}, question.bytes(), now);
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("1 crowd-0001.10.101.0.1, at 3"));
}

TEST_F(TwoLinksResponderTest, TwoMachinesOfOneNameHaveHostsOfTheirOwn) {
  responder.member(1).isTwo = true;
  responder.announce(responder.member(1), now);
  EXPECT_THAT(saidAfter(Time(0)), ElementsAre("12 Printer 0001, 33 crowd-0001, 16 Printer 0001, "
                                              "1 crowd-0001.10.100.0.1, 28 crowd-0001, ",
                                              "12 Printer 0001, 33 crowd-0001, 16 Printer 0001, "
                                              "1 crowd-0001.10.100.0.1, 28 crowd-0001, at 1",
                                              "12 Printer 0001, 33 crowd-0001-1, 16 Printer 0001, "
                                              "1 crowd-0001-1.10.101.0.1, 28 crowd-0001-1, at 2",
                                              "12 Printer 0001, 33 crowd-0001-1, 16 Printer 0001, "
                                              "1 crowd-0001-1.10.101.0.1, 28 crowd-0001-1, at 3"));
  ask({{{"crowd-0001-1", "local"}, dns::kTypeA, dns::kClassIn}});
  EXPECT_THAT(saidAfter(seconds(2)), SizeIs(4));  // the second announcement, and no answer
}

}  // namespace
