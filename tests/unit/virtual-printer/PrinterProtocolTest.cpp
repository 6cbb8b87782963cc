#include <gmock/gmock.h>

#include "HostBytes.h"
#include "PrinterProtocol.h"

namespace {

using namespace virtualprinter;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kFlashSize = 4096;

class PrinterProtocolTest : public testing::Test {
 protected:
  // The events as text: "half image", "whole uel", "wrong: …".
  std::vector<std::string> feed(std::span<const std::uint8_t> bytes) {
    std::vector<std::string> events;
    while (!bytes.empty()) {
      if (const auto event = mProtocol.feed(bytes)) events.push_back(textOf(*event));
    }
    return events;
  }

  std::vector<std::string> feedByteByByte(const Bytes& bytes) {
    std::vector<std::string> events;
    for (const std::uint8_t byte : bytes) {
      for (std::string& event : feed(std::span(&byte, 1))) events.push_back(std::move(event));
    }
    return events;
  }

  static std::string textOf(const ProtocolEvent& event) {
    if (const auto* half = std::get_if<HalfReceived>(&event)) {
      return "half " + std::string(messageName(half->message));
    }
    if (std::holds_alternative<ImageBegun>(event)) return "first byte of image";
    if (std::holds_alternative<ImageNearlyIn>(event)) return "all but the last byte of image";
    if (const auto* whole = std::get_if<Received>(&event)) {
      return "whole " + std::string(messageName(whole->message));
    }
    return "wrong: " + std::get<Violation>(event).text;
  }

  // The first event of `bytes` that is a violation.
  Violation violationIn(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
      const auto event = mProtocol.feed(bytes);
      if (event && std::holds_alternative<Violation>(*event)) return std::get<Violation>(*event);
    }
    ADD_FAILURE() << "no violation";
    return {};
  }

  PrinterProtocol mProtocol{{kFlashSize}};
};

class RepeatedProtocolTest : public PrinterProtocolTest {
 protected:
  RepeatedProtocolTest() { mProtocol = PrinterProtocol({kFlashSize, true}); }
};

const std::vector<std::string> kWholeUpdate{
    "half status-off",     "whole status-off", "half id-request",
    "whole id-request",    "half burn-header", "whole burn-header",
    "first byte of image", "half image",       "all but the last byte of image",
    "whole image",         "half uel",         "whole uel"};

TEST_F(PrinterProtocolTest, AcceptsAnUpdateInOnePiece) {
  EXPECT_EQ(feed(kStatusOff + kIdRequest + kBurnHeader + kImage + kUel), kWholeUpdate);
  EXPECT_EQ(mProtocol.bytesReceived(), 178u);
  EXPECT_EQ(mProtocol.position(), "after uel");
}

TEST_F(PrinterProtocolTest, AcceptsAnUpdateByteByByte) {
  EXPECT_EQ(feedByteByByte(kStatusOff + kIdRequest + kBurnHeader + kImage + kUel), kWholeUpdate);
}

TEST_F(PrinterProtocolTest, HandsOutTheBytesOfControlMessages) {
  std::span<const std::uint8_t> bytes = kStatusOff;
  mProtocol.feed(bytes);
  EXPECT_EQ(bytes.size(), 17u);
  const auto event = mProtocol.feed(bytes);
  EXPECT_EQ(std::get<Received>(*event).bytes, kStatusOff);
}

TEST_F(PrinterProtocolTest, ReadsChecksumAndLengthOfTheBurnHeader) {
  feed(kStatusOff + kIdRequest + kBurnHeader);
  EXPECT_EQ(mProtocol.burnRequest().checksum, 0x84ba);
  EXPECT_EQ(mProtocol.burnRequest().length, 26u);
}

TEST_F(PrinterProtocolTest, KeepsTheImageUntilItIsTaken) {
  feed(kStatusOff + kIdRequest + kBurnHeader + kImage);
  const ImageBuffer image = mProtocol.takeImage();
  EXPECT_EQ(Bytes(image.bytes().begin(), image.bytes().end()), kImage);
  EXPECT_THAT(mProtocol.takeImage().bytes(), IsEmpty());
}

TEST_F(PrinterProtocolTest, ImageSpaceEndsWhereAFaultMayStrike) {
  EXPECT_THAT(mProtocol.imageSpace(), IsEmpty());
  feed(kStatusOff + kIdRequest + kBurnHeader);
  EXPECT_EQ(mProtocol.imageSpace().size(), 1u);
  EXPECT_EQ(textOf(*mProtocol.imageReceived(1)), "first byte of image");
  EXPECT_EQ(mProtocol.imageSpace().size(), 12u);
  EXPECT_FALSE(mProtocol.imageReceived(9));
  EXPECT_EQ(mProtocol.imageSpace().size(), 3u);
  EXPECT_EQ(textOf(*mProtocol.imageReceived(3)), "half image");
  EXPECT_EQ(mProtocol.imageSpace().size(), 12u);
  EXPECT_EQ(textOf(*mProtocol.imageReceived(12)), "all but the last byte of image");
  EXPECT_EQ(mProtocol.imageSpace().size(), 1u);
  EXPECT_EQ(textOf(*mProtocol.imageReceived(1)), "whole image");
  EXPECT_THAT(mProtocol.imageSpace(), IsEmpty());
  EXPECT_EQ(mProtocol.bytesReceived(), 34u + 59 + 50 + 26);
}

TEST_F(PrinterProtocolTest, ImageOfOneByteHasNoHalf) {
  feed(kStatusOff + kIdRequest + with(kBurnHeader, 49, 1));
  EXPECT_THAT(feed(Bytes{0xff}), ElementsAre("whole image"));
}

TEST_F(PrinterProtocolTest, ImageOfTwoBytesHasAHalfAlone) {
  feed(kStatusOff + kIdRequest + with(kBurnHeader, 49, 2));
  EXPECT_THAT(feed(Bytes{1, 2}), ElementsAre("half image", "whole image"));
}

TEST_F(PrinterProtocolTest, SaysWhereTheStreamStands) {
  EXPECT_EQ(mProtocol.position(), "before status-off");
  feed(Bytes(kStatusOff.begin(), kStatusOff.begin() + 20));
  EXPECT_EQ(mProtocol.position(), "in status-off at 20 of 34");
  feed(Bytes(kStatusOff.begin() + 20, kStatusOff.end()));
  EXPECT_EQ(mProtocol.position(), "after status-off");
  feed(kIdRequest + kBurnHeader + Bytes(7));
  EXPECT_EQ(mProtocol.position(), "in image at 7 of 26");
}

TEST_F(PrinterProtocolTest, SaysPreciselyWhatWasWrong) {
  const Violation wrong = violationIn(kStatusOff + with(kIdRequest, 32, 0x0a));
  EXPECT_EQ(wrong.message, "id-request");
  EXPECT_EQ(wrong.offset, 32u);
  EXPECT_EQ(wrong.streamOffset, 66u);
  EXPECT_THAT(wrong.expected, ElementsAre(0x0d));
  EXPECT_EQ(wrong.got, 0x0a);
  EXPECT_EQ(wrong.text, "id-request, offset 32 (byte 66 of the stream): expected 0x0d, got 0x0a");
  EXPECT_EQ(mProtocol.position(), "after a violation");
}

TEST_F(PrinterProtocolTest, NoticesAWrongByteAnywhereInAControlMessage) {
  const Bytes control = kStatusOff + kIdRequest + kBurnHeader;
  for (std::size_t i = 0; i < control.size(); ++i) {
    const std::size_t inHeader = i < 93 ? 0 : i - 93;
    if (inHeader == 40 || inHeader == 41 || inHeader >= 46) continue;  // checksum and length
    mProtocol = PrinterProtocol({kFlashSize});
    const Bytes changed = with(control, i, static_cast<std::uint8_t>(control[i] ^ 0x80));
    EXPECT_EQ(violationIn(changed).streamOffset, i);
  }
}

TEST_F(PrinterProtocolTest, NoticesAWrongByteInTheClosingUel) {
  feed(kStatusOff + kIdRequest + kBurnHeader + kImage);
  EXPECT_THAT(
      feed(with(kUel, 8, 0x59)),
      ElementsAre("half uel",
                  "wrong: uel, offset 8 (byte 177 of the stream): expected 0x58, got 0x59"));
}

TEST_F(PrinterProtocolTest, NothingMayFollowTheClosingUel) {
  feed(kStatusOff + kIdRequest + kBurnHeader + kImage + kUel);
  EXPECT_THAT(feed(Bytes{0x1b}), ElementsAre("wrong: nothing, offset 0 (byte 178 of the stream): "
                                             "expected no byte after the closing UEL, got 0x1b"));
}

TEST_F(PrinterProtocolTest, SecondStatusOffIsWrong) {
  feed(kStatusOff);
  EXPECT_THAT(feed(kStatusOff),
              ElementsAre("wrong: id-request, offset 14 (byte 48 of the stream): expected 0x45, "
                          "got 0x55"));
}

TEST_F(PrinterProtocolTest, OmittedStatusOffIsWrong) {
  EXPECT_EQ(violationIn(kIdRequest).offset, 14u);
}

TEST_F(PrinterProtocolTest, ReportsOneViolationOnly) {
  EXPECT_EQ(feed(Bytes{0x00, 0x01, 0x02}).size(), 1u);
  EXPECT_THAT(feed(kStatusOff), IsEmpty());
  EXPECT_EQ(mProtocol.bytesReceived(), 37u);
}

TEST_F(PrinterProtocolTest, ImageMustNotBeEmpty) {
  const Violation wrong = violationIn(kStatusOff + kIdRequest + with(kBurnHeader, 49, 0));
  EXPECT_EQ(wrong.offset, 46u);
  EXPECT_EQ(wrong.streamOffset, 139u);
  EXPECT_THAT(wrong.expected, IsEmpty());
  EXPECT_EQ(wrong.text, "burn-header, offset 46: the image length is 0, expected 1 to 4096");
}

TEST_F(PrinterProtocolTest, ImageMustFitIntoTheFlash) {
  feed(kStatusOff + kIdRequest + with(with(kBurnHeader, 48, 0x10), 49, 0x00));
  EXPECT_EQ(mProtocol.position(), "in image at 0 of 4096");
  mProtocol = PrinterProtocol({kFlashSize});
  EXPECT_EQ(violationIn(kStatusOff + kIdRequest + with(with(kBurnHeader, 48, 0x10), 49, 1)).text,
            "burn-header, offset 46: the image length is 4097, expected 1 to 4096");
}

TEST_F(PrinterProtocolTest, LargestLengthIsReadWithoutItsSign) {
  Bytes header = kBurnHeader;
  for (std::size_t i = 46; i < 50; ++i) header[i] = 0xff;
  EXPECT_EQ(violationIn(kStatusOff + kIdRequest + header).text,
            "burn-header, offset 46: the image length is 4294967295, expected 1 to 4096");
}

TEST_F(RepeatedProtocolTest, HostMayStartAgainInsteadOfBurning) {
  feed(kStatusOff + kIdRequest);
  EXPECT_THAT(feed(kStatusOff + kIdRequest), ElementsAre("half status-off", "whole status-off",
                                                         "half id-request", "whole id-request"));
}

TEST_F(RepeatedProtocolTest, HostMayStartAgainAfterABurn) {
  const Bytes update = kStatusOff + kIdRequest + kBurnHeader + kImage + kUel;
  feed(update);
  EXPECT_EQ(feed(update), kWholeUpdate);
}

TEST_F(RepeatedProtocolTest, SaysWhatElseItWouldHaveTaken) {
  feed(kStatusOff + kIdRequest);
  const Violation wrong = violationIn(with(kStatusOff, 14, 0x58));
  EXPECT_EQ(wrong.text,
            "burn-header or status-off, offset 14 (byte 107 of the stream): expected 0x45 or 0x55, "
            "got 0x58");
  EXPECT_THAT(wrong.expected, ElementsAre(0x45, 0x55));
}

TEST_F(RepeatedProtocolTest, NamesOneByteOnceWhenBothMessagesHaveIt) {
  feed(kStatusOff + kIdRequest);
  EXPECT_EQ(violationIn(Bytes{0x00}).text,
            "burn-header or status-off, offset 0 (byte 93 of the stream): expected 0x1b, got 0x00");
}

}  // namespace
