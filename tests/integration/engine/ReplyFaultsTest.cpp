// Replies that come in unusual pieces, too late, with too many bytes, or with the wrong content.
#include <algorithm>

#include "DownloadFixture.h"

namespace {

using testing::ElementsAre;

class ReplyFaultsTest : public DownloadFixture {
 protected:
  // The lines that tell in which pieces bytes came are left out; their sum stands at the end.
  static Lines withArrivalsSummed(const Lines& lines) {
    Lines result;
    std::size_t sum = 0;
    for (const std::string& line : lines) {
      const std::string start = "5 Network data arriving [";
      if (line.starts_with(start)) {
        sum += std::stoul(line.substr(start.size()));
      } else {
        result.push_back(line);
      }
    }
    result.push_back(std::to_string(sum) + " bytes arrived");
    return result;
  }

  void expectFailedBurn(const std::string& status, const std::string& raw) {
    const Lines expected = kMergedReplies + kAwaitingBurn + arriving(16) +
                           Lines{"7 ACL Response: " + status, "7 ACL Response raw: " + raw + " ",
                                 "3 The firmware download failed on the printer."} +
                           kTransportGone;
    EXPECT_EQ(log(), expected);
    EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlNo"));
    EXPECT_EQ(stopPrinter(), 0);
    EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate);
  }

  const Lines mUpdated = kMergedReplies + kAwaitingBurn + arriving(16) + kBurned + kTransportGone;
};

// Faults that do not keep the printer from being updated.
class PiecesTest : public ReplyFaultsTest, public testing::WithParamInterface<const char*> {};

TEST_P(PiecesTest, DoNotMatter) {
  startPrinter({GetParam()});
  download();
  runUntilOutcome();
  EXPECT_EQ(withArrivalsSummed(log()), withArrivalsSummed(mUpdated));
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlOk"));
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate);
}

INSTANTIATE_TEST_SUITE_P(Dribbled, PiecesTest,
                         testing::Values("dribble=1/1", "dribble=7/2", "dribble@id-response=1/1",
                                         "dribble@device-id=5/1", "dribble@burn-reply=1/1"));
INSTANTIATE_TEST_SUITE_P(Split, PiecesTest,
                         testing::Values("split@id-response=1", "split@id-response=15",
                                         "split@id-response=16", "split@id-response=17",
                                         "split@id-response=18", "split@id-response=51",
                                         "split@burn-reply=1", "split@burn-reply=15"));
INSTANTIATE_TEST_SUITE_P(Delayed, PiecesTest,
                         testing::Values("delay@id-request=40", "delay@id-response=40",
                                         "delay@image=40", "delay@burned=40"));
INSTANTIATE_TEST_SUITE_P(OtherLength, PiecesTest,
                         testing::Values("id-header=0", "id-header=65535"));
INSTANTIATE_TEST_SUITE_P(SlowReader, PiecesTest, testing::Values("slow=10/1"));

TEST_F(ReplyFaultsTest, SlowReaderGetsALargeImage) {
  installFirmware("product.brand.bin", std::string(300000, 'x') + std::string("ABC\0"
                                                                              "00000200XYZ\0"
                                                                              "Q\0"
                                                                              "\x03\x12",
                                                                              20));
  startPrinter({"merge", "slow=4096/1"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlOk"));
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->entries("burn").at(0)["bytes"], 300020);
}

TEST_F(ReplyFaultsTest, RefusedConnectionFailsTheFirstWrite) {
  startPrinter({"refuse"});
  download();
  runUntilOutcome();
  EXPECT_EQ(log(), kStatusOffWritten + kWriteFailed + kTransportGone);
  EXPECT_THAT(takeEvents(), ElementsAre("DlNo"));
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_THAT(mPrinter->entries("connected"), testing::IsEmpty());
}

TEST_F(ReplyFaultsTest, FailedBurnIsAFailure) {
  startPrinter({"merge", "fail-burn"});
  download();
  runUntilOutcome();
  expectFailedBurn("prefix=00ac; cmd ID=000f; cmdStatus=2",
                   "00 ac 00 0f 00 02 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(ReplyFaultsTest, BurnReplyWithStatusZeroIsAFailure) {
  startPrinter({"merge", "wrong-status@burn-reply=0"});
  download();
  runUntilOutcome();
  expectFailedBurn("prefix=00ac; cmd ID=000f; cmdStatus=0",
                   "00 ac 00 0f 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(ReplyFaultsTest, BurnReplyWithAWrongPrefixIsAFailure) {
  startPrinter({"merge", "wrong-prefix@burn-reply=0xac00"});
  download();
  runUntilOutcome();
  expectFailedBurn("prefix=ac00; cmd ID=000f; cmdStatus=1",
                   "ac 00 00 0f 00 01 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(ReplyFaultsTest, BurnReplyToAnotherCommandIsAFailure) {
  startPrinter({"merge", "wrong-command@burn-reply=6"});
  download();
  runUntilOutcome();
  expectFailedBurn("prefix=00ac; cmd ID=0006; cmdStatus=1",
                   "00 ac 00 06 00 01 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(ReplyFaultsTest, BytesAfterTheDeviceIdBeginTheBurnReply) {
  startPrinter({"merge", "extra@device-id=4142"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlNo"));
  const Lines expected = kAwaitingResponse + kAwaitingDeviceId + kAwaitingBurn +
                         Lines{"7 ACL Response: prefix=4142; cmd ID=00ac; cmdStatus=f",
                               "7 ACL Response raw: 41 42 00 ac 00 0f 00 01 00 00 00 00 00 00 00 "
                               "00 ",
                               "3 The firmware download failed on the printer."} +
                         kTransportGone + Lines{"70 bytes arrived"};
  EXPECT_EQ(withArrivalsSummed(log()), expected);
}

TEST_F(ReplyFaultsTest, BytesAfterTheBurnReplyDoNotMatter) {
  startPrinter({"merge", "extra@burn-reply=4142"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlOk"));
}

TEST_F(ReplyFaultsTest, PromisedBytesThatDoNotComeAreWaitedFor) {
  startPrinter({"merge", "data-length=37"});
  download();
  expectStillWaiting();
  const Lines expected =
      kAwaitingResponse + arriving(52) +
      Lines{"7 ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1",
            "7 ACL Response raw: 00 ac 00 06 00 01 00 25 00 00 00 00 00 00 00 00 ",
            "5 Reading IEEE 1284 device ID...", "5 Async read request for 37 bytes."} +
      kDropped;
  EXPECT_EQ(log(), expected);
}

TEST_F(ReplyFaultsTest, DeviceIdOfOneCharacterNamesNoModel) {
  startPrinter({"merge", "data-length=3"});
  download();
  runUntilOutcome();
  const Lines expected =
      kAwaitingResponse + arriving(19) +
      Lines{"7 ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1",
            "7 ACL Response raw: 00 ac 00 06 00 01 00 03 00 00 00 00 00 00 00 00 ",
            "5 Reading IEEE 1284 device ID...",
            "5 Async read request for 3 bytes.",
            "5 Validating IEEE 1284 device ID...",
            "5 IEEE 1284 device ID is M",
            "5 Choosing and loading a firmware file...",
            "3 No printer model found; cannot match a firmware file without a model.",
            "3 Failed to get file system reference from URL or load the firmware file.",
            "3 Failed to load firmware file."} +
      kTransportGone;
  EXPECT_EQ(log(), expected);
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlNo"));
}

// A device ID, and what becomes of a printer that has it.
struct Identity {
  const char* name;
  const char* deviceId;
  const char* outcome;
  Lines reasons;  // the log after "Choosing and loading a firmware file...", up to the end
};

class DeviceIdTest : public ReplyFaultsTest, public testing::WithParamInterface<Identity> {};

TEST_P(DeviceIdTest, DecidesWhatIsSent) {
  startPrinter({"merge"}, {"--device-id", GetParam().deviceId});
  download();
  runUntilOutcome();
  EXPECT_EQ(takeEvents().back(), GetParam().outcome);
  const Lines lines = log();
  const auto chosen =
      std::find(lines.begin(), lines.end(), "5 Choosing and loading a firmware file...");
  ASSERT_NE(chosen, lines.end());
  EXPECT_EQ(Lines(chosen + 1, lines.end()), GetParam().reasons + kTransportGone);
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedQuery);
}

const Lines kNoModel{"3 No printer model found; cannot match a firmware file without a model.",
                     "3 Failed to get file system reference from URL or load the firmware file.",
                     "3 Failed to load firmware file."};
const Lines kNoFile{"3 Could not find a firmware file to download.",
                    "3 Failed to get file system reference from URL or load the firmware file.",
                    "3 Failed to load firmware file."};

INSTANTIATE_TEST_SUITE_P(
    Unusual, DeviceIdTest,
    testing::Values(Identity{"WithoutModel", "MFG:Veltra;LIC:QT725013;", "DlNo", kNoModel},
                    Identity{"EmptyModel", "MDL:;LIC:QT725013;", "DlNo", kNoModel},
                    Identity{"UnendedModel", "MDL:KX350T", "DlNo", kNoModel},
                    Identity{"OtherModel", "MDL:KX350T2;LIC:QT725013;", "DlNo", kNoFile},
                    Identity{"OtherVariant", "MDL:KX350T;LIC:ZZ;", "DlNo", kNoFile},
                    Identity{"SmallLetters", "MDL:kx350t;LIC:qt725013;FWVER:200;", "DlUd",
                             Lines{"5 Firmware version in IEEE 1284 string: 200",
                                   "5 Firmware version in file: 00000200",
                                   "5 Firmware on the printer is already up-to-date."}},
                    Identity{"HugeVersion", "MDL:KX350T;LIC:QT725013;FWVER:99999999999;", "DlUd",
                             Lines{"5 Firmware version in IEEE 1284 string: 99999999999",
                                   "5 Firmware version in file: 00000200",
                                   "5 Firmware on the printer is already up-to-date."}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(ReplyFaultsTest, PrinterWithoutAVersionIsUpdated) {
  startPrinter({"merge"}, {"--device-id", "MDL:KX350T;LIC:QT725013;"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlOk"));
}

TEST_F(ReplyFaultsTest, ZeroBytesInTheDeviceIdAreTakenAlong) {
  startPrinter({"merge"}, {"--device-id", R"(DES:a\x00b;MDL:KX350T;LIC:QT725013;FWVER:200;)"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlUd"));
}

}  // namespace
