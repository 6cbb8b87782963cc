#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <new>
#include <optional>
#include <string_view>

#include "Log.h"
#include "LogRecorder.h"
#include "WatchedMemory.h"
#include "platform/Describable.h"

namespace {

using platform::Text;
using testing::ElementsAre;

std::ostream& exclaim(std::ostream& out) { return out << '!'; }

std::string repeated(const char* piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

class Number : public platform::Describable {
 public:
  Text description() const override { return Text::fromUtf8("<number 7>"); }
};

// Tells where the characters of its description lie, and keeps nothing of it.
class DescribedAtLength : public platform::Describable {
 public:
  Text description() const override {
    const Text text = Text::fromUtf8("<a description too long to be held in place>");
    mCharacters = text.utf8();
    return text;
  }
  std::string_view characters() const { return mCharacters; }

 private:
  mutable std::string_view mCharacters;
};

class LogTest : public testing::Test {
 protected:
  // A logger of its own: what a test leaves in the stream does not meet another test.
  Logger mLogger{5};
  LogRecorder mRecorder;
};

TEST_F(LogTest, JoinsPiecesIntoOneEntry) {
  mLogger << "Read " << 1000 << std::string(" of ") << 4096u << " bytes" << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "Read 1000 of 4096 bytes"}));
}

TEST_F(LogTest, SendsNothingBeforeTheFlush) {
  mLogger << "waiting";
  EXPECT_THAT(mRecorder.entries(), ElementsAre());
}

TEST_F(LogTest, StartsEmptyAfterAFlush) {
  mLogger << "first" << std::flush;
  mLogger << "second" << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "first"}, LogEntry{5, "second"}));
}

TEST_F(LogTest, FlushAloneGivesAnEmptyEntry) {
  mLogger << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, ""}));
}

TEST_F(LogTest, SecondFlushInOneExpressionGivesNoEntry) {
  mLogger << "one" << std::flush << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "one"}));
}

TEST_F(LogTest, WhatFollowsAFlushBeginsTheNextEntry) {
  mLogger << "one" << std::flush << "two ";
  mLogger << "three" << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "one"}, LogEntry{5, "two three"}));
}

TEST_F(LogTest, EndlEndsTheEntryWithItsNewline) {
  mLogger << "line" << std::endl;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "line\n"}));
}

TEST_F(LogTest, AnyOtherFunctionManipulatorEndsTheEntryToo) {
  mLogger << "stop" << exclaim;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "stop!"}));
}

TEST_F(LogTest, FormattingManipulatorsDoNotEndTheEntry) {
  mLogger << std::hex << std::setfill('0') << std::setw(4) << 172 << std::dec << " " << 172
          << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "00ac 172"}));
}

TEST_F(LogTest, FormattingOutlivesTheEntry) {
  mLogger << std::hex << std::setfill('0') << 172 << std::flush;
  mLogger << std::setw(4) << 172 << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "ac"}, LogEntry{5, "00ac"}));
}

TEST_F(LogTest, ShowsANullPointerAsNull) {
  const char* const none = nullptr;
  char* const noneEither = nullptr;
  mLogger << none << " and " << noneEither << std::flush;
  mLogger << "next" << std::flush;
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, "<null> and <null>"}, LogEntry{5, "next"}));
}

TEST_F(LogTest, ShowsCharactersByTheirPointerAsTheyAre) {
  char text[] = "writable";
  mLogger << static_cast<char*>(text) << ", " << static_cast<const char*>("constant") << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "writable, constant"}));
}

TEST_F(LogTest, InsertionWithoutMemoryCutsItsOwnEntryOnly) {
  const std::string longer(2000, 'x');
  mLogger << "read ";
  {
    const FailingAllocation failing;
    mLogger << longer;
    EXPECT_TRUE(failing.hasFailed());
  }
  mLogger << " behind" << std::flush;
  mLogger << "next" << std::flush;
  const std::vector<LogEntry> entries = mRecorder.takeEntries();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_TRUE(("read " + longer).starts_with(entries[0].text)) << entries[0].text;
  EXPECT_EQ(entries[1], (LogEntry{5, "next"}));
}

TEST_F(LogTest, TextWithoutMemoryCutsItsOwnEntryOnly) {
  const Text longer = Text::fromUtf8(repeated("x", 300));
  mLogger << "name: ";
  {
    const FailingAllocation failing;
    mLogger << longer;
    EXPECT_TRUE(failing.hasFailed());
  }
  mLogger << " behind" << std::flush;
  mLogger << longer << std::flush;
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, "name: "}, LogEntry{5, repeated("x", 300)}));
}

TEST_F(LogTest, EntryThatCannotBeSentIsNotPartOfTheNext) {
  mLogger << "first";
  {
    const FailingAllocation inTheSystemLog;
    EXPECT_THROW(mLogger << std::flush, std::bad_alloc);
  }
  mLogger << "second" << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "second"}));
}

TEST_F(LogTest, PercentSignsAreText) {
  mLogger << "%s %n 100%" << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "%s %n 100%"}));
}

TEST_F(LogTest, ShowsANullTextAsNull) {
  mLogger << "name: " << Text() << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "name: <null>"}));
}

TEST_F(LogTest, AppendsATextAsUtf8) {
  mLogger << "name: " << Text::fromUtf8("B\xC3\xBCro \xF0\x9F\x96\xA8") << "." << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "name: B\xC3\xBCro \xF0\x9F\x96\xA8."}));
}

TEST_F(LogTest, AnEmptyTextAddsNothing) {
  mLogger << "[" << Text::fromUtf8("") << "]" << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "[]"}));
}

TEST_F(LogTest, ATextEndsAtItsFirstZeroByte) {
  mLogger << Text::fromUtf8(std::string_view("ab\0cd", 5)) << "." << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "ab."}));
}

TEST_F(LogTest, WritesThreeHundredCharactersWhole) {
  const std::string text = repeated("x", 300);
  mLogger << Text::fromUtf8(text) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, text}));
}

TEST_F(LogTest, GrowsTheBufferForOneCharacterMore) {
  const std::string text = repeated("x", 256);
  mLogger << Text::fromUtf8(text) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, text}));
}

TEST_F(LogTest, CutsHundredThreeByteCharactersAtEightyFive) {
  mLogger << Text::fromUtf8(repeated("\xE2\x82\xAC", 100)) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, repeated("\xE2\x82\xAC", 85)}));
}

TEST_F(LogTest, CutsBeforeTheCharacterThatDoesNotFitWhole) {
  mLogger << Text::fromUtf8("a" + repeated("\xE2\x82\xAC", 100)) << "." << std::flush;
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, "a" + repeated("\xE2\x82\xAC", 84) + "."}));
}

TEST_F(LogTest, CountsACharacterOutsideTheBasicPlaneAsTwo) {
  // 150 characters of 4 bytes each count 300, so the buffer takes 300 of their 600 bytes.
  mLogger << Text::fromUtf8(repeated("\xF0\x9F\x96\xA8", 150)) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, repeated("\xF0\x9F\x96\xA8", 75)}));
}

TEST_F(LogTest, GrowsTheBufferByCharactersNotBytes) {
  mLogger << Text::fromUtf8(repeated("\xE2\x82\xAC", 300)) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, repeated("\xE2\x82\xAC", 100)}));
}

TEST_F(LogTest, KeepsTheGrownBuffer) {
  mLogger << Text::fromUtf8(repeated("x", 300)) << std::flush;
  mLogger << Text::fromUtf8(repeated("\xE2\x82\xAC", 100)) << std::flush;
  EXPECT_THAT(mRecorder.takeEntries().back(), (LogEntry{5, repeated("\xE2\x82\xAC", 100)}));
}

TEST_F(LogTest, BufferThatAnotherLoggerGrewIsNotThisOnes) {
  Logger other(5);
  other << Text::fromUtf8(repeated("x", 300)) << std::flush;
  mLogger << Text::fromUtf8(repeated("\xE2\x82\xAC", 100)) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, repeated("x", 300)},
                                               LogEntry{5, repeated("\xE2\x82\xAC", 85)}));
}

TEST_F(LogTest, BufferOf256BytesTakes255) {
  mLogger << Text::fromUtf8(repeated("x", 255)) << std::flush;
  mLogger << Text::fromUtf8(repeated("\xC3\xBC", 255)) << std::flush;
  EXPECT_THAT(mRecorder.entries(),
              ElementsAre(LogEntry{5, repeated("x", 255)}, LogEntry{5, repeated("\xC3\xBC", 127)}));
}

TEST_F(LogTest, ShowsANullObjectAsNull) {
  mLogger << Logger::CfObj(nullptr) << " " << Logger::CfObj(Text()) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "<null> <null>"}));
}

TEST_F(LogTest, ShowsATextObjectAsItself) {
  mLogger << Logger::CfObj(Text::fromUtf8("KX350T")) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "KX350T"}));
}

TEST_F(LogTest, ShowsAnyOtherObjectByItsDescription) {
  const Number number;
  const Logger::CfObj object(&number);
  const Logger::CfObj copy = object;
  mLogger << "domain: " << object << " " << copy << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, "domain: <number 7> <number 7>"}));
}

TEST_F(LogTest, DescriptionStaysWhenItsHolderAndItsObjectAreGone) {
  std::string_view characters;
  std::optional<WatchedBlock> block;
  {
    const DescribedAtLength described;
    const Logger::CfObj object(&described);
    characters = described.characters();
    block.emplace(characters.data());
  }
  ASSERT_FALSE(block->isFreed());
  EXPECT_EQ(characters, "<a description too long to be held in place>");
}

TEST_F(LogTest, ObjectIsCutLikeAText) {
  mLogger << Logger::CfObj(Text::fromUtf8(repeated("\xE2\x82\xAC", 100))) << std::flush;
  EXPECT_THAT(mRecorder.entries(), ElementsAre(LogEntry{5, repeated("\xE2\x82\xAC", 85)}));
}

TEST(Log, KeepsOneLoggerForEachPriority) {
  EXPECT_EQ(&Log<5>(), &Log<5>());
  EXPECT_NE(&Log<3>(), &Log<5>());
  EXPECT_NE(&Log<5>(), &Log<7>());
}

TEST(Log, PassesThePriorityOn) {
  const LogRecorder recorder;
  Log<3>() << "failure" << std::flush;
  Log<5>() << "progress" << std::flush;
  Log<7>() << "dump" << std::flush;
  EXPECT_THAT(recorder.entries(),
              ElementsAre(LogEntry{3, "failure"}, LogEntry{5, "progress"}, LogEntry{7, "dump"}));
}

TEST(Log, PrioritiesDoNotShareTheirText) {
  const LogRecorder recorder;
  Log<5>() << "half ";
  Log<3>() << "failure" << std::flush;
  Log<5>() << "done" << std::flush;
  EXPECT_THAT(recorder.entries(), ElementsAre(LogEntry{3, "failure"}, LogEntry{5, "half done"}));
}

TEST(Log, DiscardsUnflushedTextWithItsLogger) {
  const LogRecorder recorder;
  { Logger(5) << "never sent"; }
  EXPECT_THAT(recorder.entries(), ElementsAre());
}

}  // namespace
