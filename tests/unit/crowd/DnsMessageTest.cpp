// The bytes of DNS messages, written and read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "DnsMessage.h"

namespace {

using dns::Bytes;
using dns::MessageWriter;
using dns::Section;
using testing::ElementsAre;
using testing::IsEmpty;

// The question for "_x.local" of type PTR, with the answer "p._x.local" known.
const Bytes kQuestion{0,    0,   0x02, 0,                        // id 0, truncated
                      0,    1,   0,    1,    0,    0,   0,   0,  // one question, one answer
                      2,    '_', 'x',  5,    'l',  'o', 'c', 'a', 'l', 0,  // 12: _x, 15: local
                      0,    12,  0x80, 1,                // PTR, IN, unicast answer
                      0xC0, 12,                          // _x.local
                      0,    12,  0,    1,                // PTR, IN
                      0,    0,   0x11, 0x94,             // 4500 s
                      0,    4,   1,    'p',  0xC0, 12};  // p._x.local

Bytes without(const Bytes& bytes, std::size_t last) {
  return {bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(last)};
}

Bytes with(Bytes bytes, std::size_t at, std::uint8_t value) {
  bytes.at(at) = value;
  return bytes;
}

TEST(DnsMessageTest, WriterPointsToNamesThatWereWrittenBefore) {
  MessageWriter writer(0, dns::kFlagTruncated);
  writer.addQuestion({{"_x", "local"}, dns::kTypePtr, dns::kClassIn | dns::kTopBit});
  writer.addRecord(Section::Answers,
                   {{"_x", "local"}, dns::kTypePtr, dns::kClassIn, 4500, {}, {"p", "_x", "local"}});
  EXPECT_EQ(writer.bytes(), kQuestion);
}

TEST(DnsMessageTest, WriterCountsEachSection) {
  MessageWriter writer(0x1234, 0x8400);
  writer.addRecord(Section::Answers, {{"h"}, dns::kTypeA, dns::kClassIn, 1, {10, 0, 0, 1}, {}});
  writer.addRecord(Section::Authority, {{"h"}, dns::kTypeTxt, dns::kClassIn, 2, {0}, {}});
  writer.addRecord(Section::Additional,
                   {{"h"}, dns::kTypeSrv, 0x8001, 3, {0, 0, 0, 0, 0x23, 0x8C}, {"h"}});
  EXPECT_EQ(
      writer.bytes(),
      (Bytes{0x12, 0x34, 0x84, 0,  0,    0,    0,    1, 0, 1, 0, 1,                  //
             1,    'h',  0,    0,  1,    0,    1,    0, 0, 0, 1, 0, 4, 10, 0, 0, 1,  // 12: h, A
             0xC0, 12,   0,    16, 0,    1,    0,    0, 0, 2, 0, 1, 0,               // TXT
             0xC0, 12,   0,    33, 0x80, 1,    0,    0, 0, 3, 0, 8,                  // SRV, unique
             0,    0,    0,    0,  0x23, 0x8C, 0xC0, 12}));                          // port 9100, h
}

TEST(DnsMessageTest, WriterCountsMoreRecordsThanAByteHolds) {
  MessageWriter writer(0, 0);
  for (int i = 0; i < 300; ++i) writer.addRecord(Section::Answers, {{"h"}, 1, 1, 1, {}, {}});
  EXPECT_EQ(Bytes(writer.bytes().begin() + 6, writer.bytes().begin() + 8), (Bytes{0x01, 0x2C}));
}

TEST(DnsMessageTest, RecordThatDoesNotFitLeavesNothingBehind) {
  MessageWriter writer(0, 0);
  const Bytes empty = writer.bytes();
  const dns::Record record{{"host"}, dns::kTypeA, dns::kClassIn, 1, {10, 0, 0, 1}, {}};
  EXPECT_FALSE(writer.addRecordWithin(31, Section::Answers, record));
  EXPECT_EQ(writer.bytes(), empty);
  EXPECT_TRUE(writer.addRecordWithin(32, Section::Answers, record));
  // Had the first attempt left its name, this one would point to it.
  EXPECT_EQ(Bytes(writer.bytes().begin() + 12, writer.bytes().begin() + 18),
            (Bytes{4, 'h', 'o', 's', 't', 0}));
}

TEST(DnsMessageTest, MessageIsReadAsItWasWritten) {
  const dns::Message message = dns::parse(kQuestion);
  EXPECT_EQ(message.id, 0);
  EXPECT_EQ(message.flags, 0x0200);
  ASSERT_EQ(message.questions.size(), 1u);
  EXPECT_THAT(message.questions[0].name, ElementsAre("_x", "local"));
  EXPECT_EQ(message.questions[0].type, 12);
  EXPECT_EQ(message.questions[0].dnsClass, 0x8001);
  ASSERT_EQ(message.answers.size(), 1u);
  EXPECT_THAT(message.answers[0].name, ElementsAre("_x", "local"));
  EXPECT_EQ(message.answers[0].timeToLive, 4500u);
  EXPECT_THAT(message.answers[0].data, IsEmpty());
  EXPECT_THAT(message.answers[0].target, ElementsAre("p", "_x", "local"));
}

TEST(DnsMessageTest, EachMessageThatIsCutOffIsRefused) {
  for (std::size_t missing = 1; missing <= kQuestion.size(); ++missing) {
    EXPECT_THROW(dns::parse(without(kQuestion, missing)), std::runtime_error) << missing;
  }
}

TEST(DnsMessageTest, NameThatPointsForwardsOrToItselfIsRefused) {
  EXPECT_THROW(dns::parse(with(kQuestion, 27, 28)), std::runtime_error);
  EXPECT_THROW(dns::parse(with(kQuestion, 27, 26)), std::runtime_error);
}

// The text of the first record would be a name without an end; the second record's name is there.
TEST(DnsMessageTest, NameThatPointsToItsOwnStartIsRefused) {
  const Bytes circle{0,    0,  0,  0, 0, 0, 0, 2, 0, 0, 0, 0,                 //
                     0,    0,  16, 0, 1, 0, 0, 0, 1, 0, 4, 1, 'a', 0xC0, 23,  // 23: the text
                     0xC0, 23, 0,  1, 0, 1, 0, 0, 0, 1, 0, 4, 10,  0,    0,  1};
  EXPECT_THROW(dns::parse(circle), std::runtime_error);
}

TEST(DnsMessageTest, DataOfAnotherLengthAreRefused) {
  EXPECT_THROW(dns::parse(with(kQuestion, 37, 3)), std::runtime_error);
  EXPECT_THROW(dns::parse(with(kQuestion, 37, 5)), std::runtime_error);
}

}  // namespace
