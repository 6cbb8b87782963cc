#include "PrinterBench.h"

namespace {

using namespace std::chrono_literals;
using namespace virtualprinter;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ConversationFaultsTest : public PrinterBench {
 protected:
  // What the printer does on the connection during a whole update.
  std::vector<std::string> callsOfAnUpdate() {
    connect();
    hostUpdates();
    advance(900ms);
    return takeCalls();
  }
};

// What the connection was asked for when the printer closes at a step.
struct Ending {
  const char* step;
  std::vector<std::string> calls;
};

class CloseTest : public PrinterBench, public testing::WithParamInterface<Ending> {};

TEST_P(CloseTest, ClosesAtTheStep) {
  fault("close@" + std::string(GetParam().step));
  connect();
  hostUpdates();
  advance(900ms);
  EXPECT_EQ(takeCalls(), GetParam().calls);
  EXPECT_TRUE(mConversation->ended());
  EXPECT_THAT(mLines,
              Contains("fault connection=1 fault=\"close@" + std::string(GetParam().step) + "\""));
}

const std::string kId = "send " + kIdResponseHex;
const std::string kDevice = "send " + kDeviceIdHex;
const std::string kBurn = "send " + kBurnReplyHex;

INSTANTIATE_TEST_SUITE_P(
    EveryStep, CloseTest,
    testing::Values(Ending{"connect", {"close"}}, Ending{"mid-status-off", {"close"}},
                    Ending{"status-off", {"close"}}, Ending{"mid-id-request", {"close"}},
                    Ending{"id-request", {"close"}},
                    Ending{"mid-id-response", {"send 00ac000600010016", "close"}},
                    Ending{"id-response", {kId, "close"}},
                    Ending{"mid-device-id", {kId, "send 00164d46473a563b4d444c", "close"}},
                    Ending{"device-id", {kId, kDevice, "close"}},
                    Ending{"mid-burn-header", {kId, kDevice, "close"}},
                    Ending{"burn-header", {kId, kDevice, "close"}},
                    Ending{"first-image-byte", {kId, kDevice, "close"}},
                    Ending{"mid-image", {kId, kDevice, "close"}},
                    Ending{"last-image-byte", {kId, kDevice, "close"}},
                    Ending{"image", {kId, kDevice, "close"}},
                    Ending{"mid-uel", {kId, kDevice, "close"}},
                    Ending{"uel", {kId, kDevice, "close"}},
                    Ending{"burned", {kId, kDevice, "close"}},
                    Ending{"mid-burn-reply", {kId, kDevice, "send 00ac000f00010000", "close"}},
                    Ending{"burn-reply", {kId, kDevice, kBurn, "close"}}),
    [](const auto& test) {
      std::string name = test.param.step;
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

TEST_F(ConversationFaultsTest, ResetIsRude) {
  fault("reset@id-request");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre("reset"));
}

TEST_F(ConversationFaultsTest, SilentPrinterStillBurns) {
  fault("silence@id-response");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId));
  EXPECT_EQ(printer().tally().burned, 1u);
}

TEST_F(ConversationFaultsTest, HangingPrinterReadsNoMore) {
  fault("hang@mid-image");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId, kDevice, "stop reading"));
  EXPECT_EQ(printer().tally().burned, 0u);
  EXPECT_EQ(mLines.back(), "fault connection=1 fault=\"hang@mid-image\"");
}

TEST_F(ConversationFaultsTest, DelayHoldsUpTheReply) {
  fault("delay@id-request=40");
  connect();
  hostSends(kStatusOff + kIdRequest);
  advance(39ms);
  EXPECT_THAT(takeCalls(), IsEmpty());
  advance(1ms);
  EXPECT_THAT(takeCalls(), ElementsAre(kId, kDevice));
}

TEST_F(ConversationFaultsTest, ExtraBytesComeBetweenTheReplies) {
  fault("extra@id-response=41");
  fault("extra@device-id=4243");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId, "send 41", kDevice, "send 4243", kBurn));
}

TEST_F(ConversationFaultsTest, FaultsOfOneStepStrikeInTheirOrder) {
  fault("extra@status-off=41");
  fault("close@status-off");
  fault("extra@status-off=42");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre("send 41", "close"));
}

TEST_F(ConversationFaultsTest, MediumPerformsItsOwnFaults) {
  fault("unplug@uel=200");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId, kDevice, "perform unplug@uel=200", kBurn));
}

TEST_F(ConversationFaultsTest, ShutdownSaysNothingMore) {
  fault("shutdown@id-response");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId, "perform shutdown@id-response"));
}

TEST_F(ConversationFaultsTest, ResponsesMayBeWrong) {
  fault("wrong-prefix@id-response=0x1234");
  fault("wrong-command@burn-reply=6");
  fault("wrong-status");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre("send 12340006000200160000000000000000", kDevice,
                                             "send 00ac0006000200000000000000000000"));
}

TEST_F(ConversationFaultsTest, DataLengthCutsTheDeviceId) {
  fault("data-length=3");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac0006000100030000000000000000", "send 00164d"));
}

TEST_F(ConversationFaultsTest, DataLengthOfNothingSendsNothing) {
  fault("data-length=0");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac0006000100000000000000000000"));
}

TEST_F(ConversationFaultsTest, DataLengthMayPromiseTooMuch) {
  fault("data-length=65535");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac00060001ffff0000000000000000", kDevice));
}

TEST_F(ConversationFaultsTest, HeaderOfTheDeviceIdMayLie) {
  fault("id-header=0xffff");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre(kId, "send ffff" + kDeviceIdHex.substr(4)));
}

TEST_F(ConversationFaultsTest, RepliesMayDribble) {
  fault("dribble@id-response=7/10");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac0006000100"));
  advance(10ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 16000000000000"));
  advance(10ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 0000", kDevice));
}

TEST_F(ConversationFaultsTest, StepIsReachedInTheMiddleOfADribble) {
  fault("dribble@id-response=7/10");
  fault("extra@mid-id-response=ee");
  connect();
  hostSends(kStatusOff + kIdRequest);
  advance(10ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac0006000100", "send 16000000000000", "send ee"));
}

TEST_F(ConversationFaultsTest, MergedRepliesAreOnePiece) {
  fault("merge");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId + kDeviceIdHex, kBurn));
}

TEST_F(ConversationFaultsTest, RepliesMayBeSplitAnywhere) {
  fault("split@id-response=20");
  fault("split@burn-reply=1");
  connect();
  hostUpdates();
  EXPECT_THAT(takeCalls(), ElementsAre(kId + "00164d46"));
  advance(20ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kDeviceIdHex.substr(8)));
  advance(480ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00"));
  advance(20ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send ac000f000100000000000000000000"));
}

TEST_F(ConversationFaultsTest, SplitBeyondTheEndIsOnePiece) {
  fault("split=1000");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre(kId + kDeviceIdHex));
}

TEST_F(ConversationFaultsTest, FailedBurnTakesItsTimeAndKeepsTheOldFirmware) {
  fault("fail-burn=7");
  connect();
  hostUpdates();
  takeCalls();
  advance(499ms);
  EXPECT_THAT(takeCalls(), IsEmpty());
  advance(1ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac000f000700000000000000000000"));
  EXPECT_THAT(mLines, Contains(HasSubstr("burn ok=false status=7 reason=\"fault fail-burn=7\"")));
  EXPECT_FALSE(printer().wantsRestart());
}

TEST_F(ConversationFaultsTest, FaultsEndWithTheFaultyConversations) {
  mSettings.faultyConversations = 1;
  fault("close@status-off");
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre("close"));
  EXPECT_THAT(callsOfAnUpdate(), ElementsAre(kId, kDevice, kBurn));
}

}  // namespace
