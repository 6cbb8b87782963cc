#include "Conversation.h"
#include "PrinterBench.h"

namespace {

using namespace std::chrono_literals;
using namespace virtualprinter;
using testing::ElementsAre;
using testing::IsEmpty;

class ConversationTest : public PrinterBench {};

const std::string kStatusOffHex =
    "1b252d31323334355840504a4c20555354415455534f46460a1b252d313233343558";
const std::string kIdRequestHex =
    "1b252d31323334355840504a4c20454e544552204c414e47554147453d41434c0d0a00ac0006"
    "0000000000000000000000001b252d313233343558";
const std::string kBurnHeaderHex =
    "1b252d31323334355840504a4c20454e544552204c414e47554147453d41434c0d0a00ac000f"
    "040084ba000000000000001a";

TEST_F(ConversationTest, AnswersTheDeviceIdRequestInTwoPieces) {
  connect();
  hostSends(kStatusOff);
  EXPECT_THAT(takeCalls(), IsEmpty());
  hostSends(kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kIdResponseHex, "send " + kDeviceIdHex));
}

TEST_F(ConversationTest, AnswersTheBurnWhenItIsOver) {
  connect();
  hostUpdates();
  takeCalls();
  advance(499ms);
  EXPECT_THAT(takeCalls(), IsEmpty());
  advance(1ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kBurnReplyHex));
}

TEST_F(ConversationTest, JournalTellsTheWholeUpdate) {
  connect();
  hostUpdates();
  advance(500ms);
  mConversation->hostFinished();
  EXPECT_THAT(
      takeJournal(),
      ElementsAre(
          "connected connection=1 peer=\"host\"",
          "received connection=1 message=\"status-off\" bytes=34 hex=\"" + kStatusOffHex + "\"",
          "received connection=1 message=\"id-request\" bytes=59 hex=\"" + kIdRequestHex + "\"",
          "sent connection=1 message=\"id-response\" bytes=16 hex=\"" + kIdResponseHex + "\"",
          "sent connection=1 message=\"device-id\" bytes=22 hex=\"" + kDeviceIdHex + "\"",
          "received connection=1 message=\"burn-header\" bytes=50 hex=\"" + kBurnHeaderHex + "\"",
          "received connection=1 message=\"image\" bytes=26",
          "received connection=1 message=\"uel\" bytes=9 hex=\"1b252d313233343558\"",
          "burning seconds=0.5",
          "burn ok=true status=1 reason=\"\" bytes=26 "
          "sha256=\"270a2f886f93c123e47391a821b7e6264d0fc7774ce7feddfed5cdb1d6d46f94\" "
          "checksum=33978 announced_checksum=33978 platform_id=[\"KX\",\"00000200\",\"Q\"] "
          "version=\"00000200\"",
          "sent connection=1 message=\"burn-reply\" bytes=16 hex=\"" + kBurnReplyHex + "\"",
          "closed connection=1 by=\"host\" received=178 sent=54 position=\"after uel\""));
}

TEST_F(ConversationTest, BytesMayComeOneByOne) {
  connect();
  hostSendsSlowly(kStatusOff + kIdRequest + kBurnHeader + kImage + kUel);
  advance(500ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kIdResponseHex, "send " + kDeviceIdHex,
                                       "send " + kBurnReplyHex));
}

TEST_F(ConversationTest, HostMaySendEverythingWithoutWaiting) {
  connect();
  hostSends(kStatusOff + kIdRequest + kBurnHeader + kImage + kUel);
  mConversation->hostFinished();
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kIdResponseHex, "send " + kDeviceIdHex));
  advance(500ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kBurnReplyHex, "close"));
}

TEST_F(ConversationTest, ImageMayBeStoredDirectly) {
  connect();
  EXPECT_THAT(mConversation->imageSpace(), IsEmpty());
  hostSends(kStatusOff + kIdRequest + kBurnHeader);
  std::size_t done = 0;
  while (!mConversation->imageSpace().empty()) {
    const std::span<std::uint8_t> space = mConversation->imageSpace();
    std::copy_n(kImage.begin() + static_cast<std::ptrdiff_t>(done), space.size(), space.begin());
    done += space.size();
    mConversation->imageReceived(space.size());
  }
  hostSends(kUel);
  advance(500ms);
  EXPECT_EQ(takeCalls().back(), "send " + kBurnReplyHex);
}

TEST_F(ConversationTest, WrongChecksumIsAnsweredAtOnceWithItsStatus) {
  connect();
  hostSends(kStatusOff + kIdRequest + with(kBurnHeader, 41, 0xbb) + kImage + kUel);
  takeCalls();
  advance(0ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac000f000300000000000000000000"));
  EXPECT_THAT(mLines, testing::Contains(testing::HasSubstr(
                          "reason=\"the checksum of the image is 33978, the burn header says "
                          "33979\"")));
}

TEST_F(ConversationTest, MalformedPlatformIdIsAnsweredWithItsStatus) {
  connect();
  const Bytes image = with(kImage, 24, 0x02);
  hostSends(kStatusOff + kIdRequest + with(with(kBurnHeader, 40, 0x85), 41, 0xba) + image + kUel);
  takeCalls();
  advance(0ms);
  EXPECT_THAT(takeCalls(), ElementsAre("send 00ac000f000400000000000000000000"));
  EXPECT_THAT(
      mLines,
      testing::Contains(testing::HasSubstr("reason=\"the platform ID version is 2, expected 3\"")));
}

TEST_F(ConversationTest, ViolationEndsTheConversation) {
  connect();
  hostSends(kStatusOff);
  takeJournal();
  hostSends(with(kIdRequest, 0, 0x1c) + kBurnHeader);
  EXPECT_THAT(takeCalls(), ElementsAre("close"));
  EXPECT_TRUE(mConversation->ended());
  EXPECT_THAT(takeJournal(),
              ElementsAre("violation connection=1 message=\"id-request\" offset=0 stream_offset=34 "
                          "expected=\"1b\" got=\"1c\" text=\"id-request, offset 0 (byte 34 of the "
                          "stream): expected 0x1b, got 0x1c\"",
                          "closed connection=1 by=\"printer\" received=35 sent=0 position=\"after "
                          "a violation\""));
  EXPECT_EQ(printer().tally().violations, 1u);
}

TEST_F(ConversationTest, HostThatLeavesAfterTheDeviceIdIsLetGo) {
  connect();
  hostSends(kStatusOff + kIdRequest);
  takeCalls();
  mConversation->hostFinished();
  EXPECT_THAT(takeCalls(), ElementsAre("close"));
  EXPECT_EQ(mLines.back(),
            "closed connection=1 by=\"host\" received=93 sent=38 position=\"after id-request\"");
}

TEST_F(ConversationTest, HostThatBreaksOffInTheImageIsNoted) {
  connect();
  hostSends(kStatusOff + kIdRequest + kBurnHeader + Bytes(5));
  mConversation->lost("Connection reset by peer");
  EXPECT_EQ(mLines.at(mLines.size() - 2), "lost connection=1 reason=\"Connection reset by peer\"");
  EXPECT_EQ(mLines.back(),
            "closed connection=1 by=\"host\" received=148 sent=38 "
            "position=\"in image at 5 of 26\"");
}

TEST_F(ConversationTest, BurnGoesOnWithoutTheHost) {
  connect();
  hostUpdates();
  takeCalls();
  mConversation->lost("Connection reset by peer");
  EXPECT_FALSE(mConversation->ended());
  advance(500ms);
  EXPECT_THAT(takeCalls(), ElementsAre("close"));
  EXPECT_EQ(printer().tally().burned, 1u);
}

TEST_F(ConversationTest, AbandonedBurnIsDropped) {
  connect();
  hostUpdates();
  mConversation->abandon();
  EXPECT_TRUE(mConversation->ended());
  advance(10s);
  EXPECT_EQ(printer().tally().burned, 0u);
  EXPECT_EQ(mClock.pending(), 0u);
}

TEST_F(ConversationTest, DestroyedConversationLeavesNothingBehind) {
  fault("dribble=1/10");
  connect();
  hostSends(kStatusOff + kIdRequest);
  EXPECT_EQ(mClock.pending(), 1u);
  mConversation.reset();
  EXPECT_EQ(mClock.pending(), 0u);
  EXPECT_EQ(printer().tally().conversations, 1u);
}

TEST_F(ConversationTest, HostMayStartAgainOnAStreamWithoutAnEnd) {
  connect(true);
  hostSends(kStatusOff + kIdRequest + kStatusOff + kIdRequest);
  EXPECT_THAT(takeCalls(), ElementsAre("send " + kIdResponseHex, "send " + kDeviceIdHex,
                                       "send " + kIdResponseHex, "send " + kDeviceIdHex));
}

}  // namespace
