#include <gmock/gmock.h>

#include "Journal.h"

namespace {

using namespace virtualprinter;
using testing::MatchesRegex;

class JournalTest : public testing::Test {
 protected:
  JournalTest() {
    mJournal.addSink([this](const Journal::Fields& entry) { mEntry = entry; });
  }

  Journal mJournal;
  Journal::Fields mEntry;
};

TEST_F(JournalTest, EntryIsALineOfJsonInAFixedOrder) {
  mJournal.write("sent", {{"message", "uel"}, {"bytes", 9}});
  EXPECT_THAT(
      Journal::toLine(mEntry),
      MatchesRegex(
          "\\{\"time\":[0-9]+\\.[0-9]+,\"event\":\"sent\",\"message\":\"uel\",\"bytes\":9\\}"));
}

TEST_F(JournalTest, EntryOfOneOfSeveralPrintersSaysWhose) {
  mJournal.addField("printer", "10.0.0.5");
  mJournal.write("sent", {{"bytes", 9}});
  EXPECT_THAT(
      Journal::toLine(mEntry),
      MatchesRegex("\\{\"time\":[0-9]+\\.[0-9]+,\"event\":\"sent\",\"printer\":\"10.0.0.5\","
                   "\"bytes\":9\\}"));
}

TEST_F(JournalTest, EntryMayHaveNoFields) {
  mJournal.write("ready");
  EXPECT_EQ(mEntry.size(), 2u);
}

TEST_F(JournalTest, BytesThatAreNoTextAreReplaced) {
  mJournal.write("ready", {{"device_id", "DES:\xff;"}});
  EXPECT_THAT(Journal::toLine(mEntry), testing::HasSubstr("\"DES:\xef\xbf\xbd;\""));
}

TEST_F(JournalTest, TextIsForPeople) {
  mJournal.write("sent", {{"message", "uel"}, {"bytes", 9}});
  EXPECT_THAT(Journal::toText(mEntry),
              MatchesRegex("[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9][0-9][0-9] sent "
                           "message=\"uel\" bytes=9"));
}

TEST_F(JournalTest, WritesBytesAsTwoDigitsEach) {
  const std::uint8_t bytes[] = {0x00, 0x0a, 0xff};
  EXPECT_EQ(Journal::hex(bytes), "000aff");
  EXPECT_EQ(Journal::hex({}), "");
}

}  // namespace
