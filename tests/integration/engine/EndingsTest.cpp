// Printers that end the conversation, fall silent or hang, at every step of it. The program is held
// at a line of its log until the printer has done so; from there on each side only reacts, and the
// whole log is known.
#include <algorithm>

#include "DownloadFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Where the program is held.
const std::string kAtStart;
const std::string kAtStatusOff = "Async write request for 34 bytes.";
const std::string kAtRequest = "Async write request for 59 bytes.";
const std::string kAtHeader = "Async write request for 50 bytes.";
const std::string kAtImage = "Async write request for 28 bytes.";
const std::string kAtUel = "Async write request for 9 bytes.";

enum class Outcome { Waits, Fails, Succeeds };

struct Case {
  std::string fault;
  std::string heldAt;
  Lines log;  // without what follows from the outcome
  Outcome outcome;
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.fault; }

// The end of the stream, which a broken connection has too.
const Lines kEnd = arriving(0);

// From the response on, when it arrives by itself, or with half of the device ID.
const Lines kResponseOnly = kAwaitingResponse + arriving(16) + kAwaitingDeviceId;
const Lines kHalfDeviceId = kAwaitingResponse + arriving(34) + kAwaitingDeviceId;

std::string nameOf(const testing::TestParamInfo<Case>& test) {
  std::string name = test.param.fault;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '-' || c == '@'; }, '_');
  return name;
}

class EndingTest : public DownloadFixture, public testing::WithParamInterface<Case> {
 protected:
  void holdUntil(const std::string& event) {
    if (GetParam().heldAt.empty()) {
      mPrinter->waitFor(event);
    } else {
      holdUntilPrinter(event, GetParam().heldAt);
    }
  }

  // What must follow, from where the program was held.
  void expectOutcome() {
    switch (GetParam().outcome) {
      case Outcome::Waits:
        expectStillWaiting();
        EXPECT_EQ(log(), GetParam().log + kDropped);
        break;
      case Outcome::Fails:
        runUntilOutcome();
        EXPECT_EQ(takeEvents().back(), "DlNo");
        EXPECT_EQ(log(), GetParam().log + kWriteFailed + kTransportGone);
        break;
      case Outcome::Succeeds:
        runUntilOutcome();
        EXPECT_EQ(takeEvents().back(), "DlOk");
        EXPECT_EQ(log(), GetParam().log + kTransportGone);
        break;
    }
  }
};

using CloseTest = EndingTest;
using ResetTest = EndingTest;
using SilenceTest = EndingTest;
using ShutdownTest = EndingTest;

TEST_P(CloseTest, EndsAsExpected) {
  startPrinter({"merge", GetParam().fault});
  download();
  holdUntil("closed");
  expectOutcome();
  EXPECT_EQ(stopPrinter(), 0);
}

TEST_P(ResetTest, EndsAsExpected) {
  startPrinter({"merge", GetParam().fault});
  download();
  holdUntil("closed");
  expectOutcome();
  EXPECT_EQ(stopPrinter(), 0);
}

TEST_P(SilenceTest, LeavesTheDownloadWaiting) {
  startPrinter({"merge", GetParam().fault});
  download();
  holdUntil("fault");
  expectOutcome();
  EXPECT_EQ(stopPrinter(), 0);
}

TEST_P(ShutdownTest, LeavesTheDownloadWaiting) {
  startPrinter({"merge", GetParam().fault});
  download();
  holdUntil("performed");
  expectOutcome();
  EXPECT_EQ(stopPrinter(), 0);
}

// The first write to a closed connection goes well; it is the next one that fails. A connection
// that is closed before everything was read is broken, and the first one fails.
INSTANTIATE_TEST_SUITE_P(
    EveryStep, CloseTest,
    testing::Values(
        Case{"close@connect", kAtStart, kRequestWritten, Outcome::Fails},
        Case{"close@mid-status-off", kAtStatusOff, kRequestWritten + kEnd + kReady + kAwaitResponse,
             Outcome::Waits},
        Case{"close@status-off", kAtStatusOff, kRequestWritten + kEnd + kReady + kAwaitResponse,
             Outcome::Waits},
        Case{"close@mid-id-request", kAtRequest, kAwaitingResponse + kEnd, Outcome::Waits},
        Case{"close@id-request", kAtRequest, kAwaitingResponse + kEnd, Outcome::Waits},
        Case{"close@mid-device-id", kAtRequest,
             kAwaitingResponse + arriving(26) + kAwaitingDeviceId + kEnd, Outcome::Waits},
        Case{"close@device-id", kAtRequest, kMergedReplies + kImageWritten, Outcome::Fails},
        Case{"close@mid-burn-header", kAtHeader,
             kMergedReplies + kImageWritten + kEnd + kReady + kUel, Outcome::Fails},
        Case{"close@burn-header", kAtHeader, kMergedReplies + kImageWritten + kEnd + kReady + kUel,
             Outcome::Fails},
        Case{"close@mid-image", kAtImage, kMergedReplies + kUelWritten + kEnd + kReady + kAwaitBurn,
             Outcome::Waits},
        Case{"close@image", kAtImage, kMergedReplies + kUelWritten + kEnd + kReady + kAwaitBurn,
             Outcome::Waits},
        Case{"close@mid-uel", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"close@uel", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"close@burned", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"close@mid-burn-reply", kAtUel, kMergedReplies + kAwaitingBurn + arriving(8) + kEnd,
             Outcome::Waits},
        Case{"close@burn-reply", kAtUel, kMergedReplies + kAwaitingBurn + arriving(16) + kBurned,
             Outcome::Succeeds}),
    nameOf);

// After a reset, the very next write fails.
INSTANTIATE_TEST_SUITE_P(
    EveryStep, ResetTest,
    testing::Values(
        Case{"reset@connect", kAtStart, kStatusOffWritten, Outcome::Fails},
        Case{"reset@mid-status-off", kAtStatusOff, kRequestWritten, Outcome::Fails},
        Case{"reset@status-off", kAtStatusOff, kRequestWritten, Outcome::Fails},
        Case{"reset@mid-id-request", kAtRequest, kAwaitingResponse + kEnd, Outcome::Waits},
        Case{"reset@id-request", kAtRequest, kAwaitingResponse + kEnd, Outcome::Waits},
        Case{"reset@mid-device-id", kAtRequest,
             kAwaitingResponse + arriving(26) + kAwaitingDeviceId + kEnd, Outcome::Waits},
        Case{"reset@device-id", kAtRequest, kMergedReplies + kHeaderWritten, Outcome::Fails},
        Case{"reset@mid-burn-header", kAtHeader, kMergedReplies + kImageWritten, Outcome::Fails},
        Case{"reset@burn-header", kAtHeader, kMergedReplies + kImageWritten, Outcome::Fails},
        Case{"reset@mid-image", kAtImage, kMergedReplies + kUelWritten, Outcome::Fails},
        Case{"reset@image", kAtImage, kMergedReplies + kUelWritten, Outcome::Fails},
        Case{"reset@mid-uel", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"reset@uel", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"reset@burned", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"reset@mid-burn-reply", kAtUel, kMergedReplies + kAwaitingBurn + arriving(8) + kEnd,
             Outcome::Waits},
        Case{"reset@burn-reply", kAtUel, kMergedReplies + kAwaitingBurn + arriving(16) + kBurned,
             Outcome::Succeeds}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    EveryStep, SilenceTest,
    testing::Values(
        Case{"silence@connect", kAtStart, kAwaitingResponse, Outcome::Waits},
        Case{"silence@status-off", kAtStatusOff, kAwaitingResponse, Outcome::Waits},
        Case{"silence@id-request", kAtRequest, kAwaitingResponse, Outcome::Waits},
        Case{"silence@mid-device-id", kAtRequest,
             kAwaitingResponse + arriving(26) + kAwaitingDeviceId, Outcome::Waits},
        Case{"silence@device-id", kAtRequest, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"silence@burn-header", kAtHeader, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"silence@mid-image", kAtImage, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"silence@image", kAtImage, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"silence@uel", kAtUel, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"silence@burned", kAtUel, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"silence@mid-burn-reply", kAtUel, kMergedReplies + kAwaitingBurn + arriving(8),
             Outcome::Waits},
        Case{"hang@connect", kAtStart, kAwaitingResponse, Outcome::Waits},
        Case{"hang@id-request", kAtRequest, kAwaitingResponse, Outcome::Waits},
        Case{"hang@burn-header", kAtHeader, kMergedReplies + kAwaitingBurn, Outcome::Waits},
        Case{"hang@uel", kAtUel, kMergedReplies + kAwaitingBurn, Outcome::Waits}),
    nameOf);

// The printer ends its own direction and still takes everything.
INSTANTIATE_TEST_SUITE_P(
    EveryStep, ShutdownTest,
    testing::Values(
        Case{"shutdown@id-request", kAtRequest, kAwaitingResponse + kEnd, Outcome::Waits},
        Case{"shutdown@device-id", kAtRequest,
             kMergedReplies + kImageWritten + kEnd + kReady + kUel + kReady + kAwaitBurn,
             Outcome::Waits},
        Case{"shutdown@uel", kAtUel, kMergedReplies + kAwaitingBurn + kEnd, Outcome::Waits},
        Case{"shutdown@mid-burn-reply", kAtUel, kMergedReplies + kAwaitingBurn + arriving(8) + kEnd,
             Outcome::Waits}),
    nameOf);

// Without "merge", the response is a piece of its own.
class SeparateRepliesTest : public EndingTest {};

TEST_P(SeparateRepliesTest, LeavesTheDownloadWaiting) {
  startPrinter({GetParam().fault});
  download();
  holdUntil(GetParam().fault.starts_with("silence") ? "fault" : "closed");
  expectOutcome();
}

INSTANTIATE_TEST_SUITE_P(
    EveryStep, SeparateRepliesTest,
    testing::Values(Case{"close@mid-id-response", kAtRequest,
                         kAwaitingResponse + arriving(8) + kEnd, Outcome::Waits},
                    Case{"reset@mid-id-response", kAtRequest,
                         kAwaitingResponse + arriving(8) + kEnd, Outcome::Waits},
                    Case{"silence@mid-id-response", kAtRequest, kAwaitingResponse + arriving(8),
                         Outcome::Waits},
                    Case{"close@id-response", kAtRequest, kResponseOnly + kEnd, Outcome::Waits},
                    Case{"reset@id-response", kAtRequest, kResponseOnly + kEnd, Outcome::Waits},
                    Case{"silence@id-response", kAtRequest, kResponseOnly, Outcome::Waits},
                    Case{"close@mid-device-id", kAtRequest, kHalfDeviceId + kEnd, Outcome::Waits}),
    nameOf);

class BrokenImageTest : public DownloadFixture {
 protected:
  // More than two hosts can have in flight between them.
  static constexpr std::size_t kSize = 24 << 20;

  BrokenImageTest() {
    installFirmware("product.brand.bin", std::string(kSize - 20, 'x') + std::string("ABC\0"
                                                                                    "00000200XYZ\0"
                                                                                    "Q\0"
                                                                                    "\x03\x12",
                                                                                    20));
  }

  const Lines mLogOfFailure = kMergedReplies + kImageWriting +
                              Lines{"5 Async write request for 25165824 bytes."} + kWriteFailed +
                              kTransportGone;
};

TEST_F(BrokenImageTest, CloseWhileTheImageIsSentFailsTheWrite) {
  startPrinter({"merge", "close@mid-image", "receive-buffer=65536"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlNo"));
  EXPECT_EQ(log(), mLogOfFailure);
  stopPrinter();
  EXPECT_EQ(mPrinter->entries("closed").at(0)["position"], "in image at 12582912 of 25165824");
}

TEST_F(BrokenImageTest, ResetWhileTheImageIsSentFailsTheWrite) {
  startPrinter({"merge", "reset@mid-image", "receive-buffer=65536"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlNo"));
  EXPECT_EQ(log(), mLogOfFailure);
}

TEST_F(BrokenImageTest, PrinterThatStopsReadingFailsTheWriteAfterFiveSeconds) {
  startPrinter({"merge", "hang@mid-image", "receive-buffer=4096"});
  download();
  const auto start = std::chrono::steady_clock::now();
  runUntilOutcome();
  const auto taken = std::chrono::steady_clock::now() - start;
  EXPECT_GE(taken, std::chrono::seconds(5));
  EXPECT_LT(taken, std::chrono::seconds(8));
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlNo"));
  EXPECT_EQ(log(), mLogOfFailure);
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_THAT(mPrinter->entries("burn"), IsEmpty());
}

TEST_F(BrokenImageTest, ProgramThatEndsInTheImageLeavesThePrinterAsItWas) {
  startPrinter({"merge", "hang@burn-header"});
  download();
  holdUntilPrinter("fault", kAtHeader);
  mDownloader.reset();
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->entries("closed").at(0)["position"], "in image at 0 of 25165824");
}

}  // namespace
