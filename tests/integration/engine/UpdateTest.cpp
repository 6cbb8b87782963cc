// Downloads that go well, and those that end as the printer or its firmware file want it.
#include <algorithm>

#include "DownloadFixture.h"
#include "NetworkTransport.h"

namespace {

using testing::ElementsAre;

class UpdateTest : public DownloadFixture {};

// The lines without those that tell in which pieces the bytes came.
Lines withoutArrivals(Lines lines) {
  std::erase_if(
      lines, [](const std::string& line) { return line.starts_with("5 Network data arriving"); });
  return lines;
}

const Lines kUpdated = kMergedReplies + kAwaitingBurn + arriving(16) + kBurned + kTransportGone;
const Lines kThreeReadsThenOk{"FwDl 1", "FwDl 1", "FwDl 1", "DlOk"};

TEST_F(UpdateTest, PrinterBurnsTheImage) {
  startPrinter({"merge"});
  download();
  runUntilOutcome();
  EXPECT_EQ(log(), kUpdated);
  EXPECT_EQ(takeEvents(), kThreeReadsThenOk);
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate);
  EXPECT_EQ(mPrinter->entries("burn").at(0).dump(),
            R"({"event":"burn","ok":true,"status":1,"reason":"","bytes":28,)"
            R"("sha256":"f4db0edd718dd5406baddc89f0fecd50a58564df1ae9ca722e1ddc25c1c9f631",)"
            R"("checksum":29297,"announced_checksum":29297,)"
            R"("platform_id":["ABC","00000200XYZ","Q"],"version":"00000200"})");
}

TEST_F(UpdateTest, RepliesMayComeInPiecesOfTheirOwn) {
  startPrinter();
  download();
  runUntilOutcome();
  EXPECT_EQ(withoutArrivals(log()), withoutArrivals(kUpdated));
  EXPECT_EQ(takeEvents(), kThreeReadsThenOk);
}

TEST_F(UpdateTest, SecondUpdateIsUpToDate) {
  startPrinter({"merge"});
  download();
  runUntilOutcome();
  mPrinter->waitFor("ready", 2);
  mLog.takeEntries();
  takeEvents();
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlUd"));
  const Lines expected =
      kAwaitingResponse + arriving(57) +
      Lines{"7 ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1",
            "7 ACL Response raw: 00 ac 00 06 00 01 00 29 00 00 00 00 00 00 00 00 ",
            "5 Reading IEEE 1284 device ID...",
            "5 Async read request for 41 bytes.",
            "5 Validating IEEE 1284 device ID...",
            "5 IEEE 1284 device ID is MDL:KX350T;LIC:QT725013;FWVER:00000200;",
            "5 Choosing and loading a firmware file...",
            "5 Firmware version in IEEE 1284 string: 00000200",
            "5 Firmware version in file: 00000200",
            "5 Firmware on the printer is already up-to-date."} +
      kTransportGone;
  EXPECT_EQ(log(), expected);
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate + kReceivedQuery);
}

TEST_F(UpdateTest, NewerPrinterIsLeftAlone) {
  startPrinter({"merge"}, {"--device-id", "MDL:KX350T;LIC:QT725013;FWVER:201;"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlUd"));
  stopPrinter();
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedQuery);
}

TEST_F(UpdateTest, LargeImageArrivesWhole) {
  std::string image(4 << 20, '\0');
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<char>(i * 7 + (i >> 12));
  image.append(
      "ABC\0"
      "00000200XYZ\0"
      "Q\0"
      "\x03\x12",
      20);
  installFirmware("product.brand.bin", image);
  startPrinter({"merge"});
  download();
  runUntilOutcome();
  EXPECT_EQ(takeEvents(), kThreeReadsThenOk);
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->entries("burn").at(0)["sha256"],
            "5db4d7eca3f5c99988471a8c1936464cec3b613b407651fb58294a00ed140ae6");
  EXPECT_EQ(mPrinter->receivedMessages().at(3), "image 4194324");
}

TEST_F(UpdateTest, VariantGetsItsOwnFile) {
  installFirmware("product.tarn.bin", std::string("TARN"
                                                  "A\0"
                                                  "00000300\0"
                                                  "\0"
                                                  "\x03\x0c",
                                                  18));
  startPrinter({"merge"}, {"--device-id", "MDL:KX350T;LIC:;FWVER:100;"});
  download();
  runUntilOutcome();
  EXPECT_EQ(takeEvents(), kThreeReadsThenOk);
  stopPrinter();
  EXPECT_EQ(mPrinter->entries("burn").at(0)["version"], "00000300");
}

TEST_F(UpdateTest, MissingFileFailsWithoutABurnHeader) {
  std::filesystem::remove(mResources.path() / "product.brand.bin");
  mLog.statuses().define(2, "ENOENT", "No such file or directory");
  startPrinter({"merge"});
  download();
  runUntilOutcome();
  const Lines expected = kMergedReplies + kDeviceIdHandled +
                         Lines{
                             "3 Failed to make file system reference for firmware file. <status=2 "
                             "=> ENOENT; desc: No such file or directory>",
                             "3 Failed to load firmware file."} +
                         kTransportGone;
  EXPECT_EQ(log(), expected);
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlNo"));
  stopPrinter();
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedQuery);
}

TEST_F(UpdateTest, FileWithAMalformedBlockSendsNothing) {
  installFirmware("product.brand.bin", std::string("FIRMWARE\x02\x00", 10));
  startPrinter({"merge"});
  download();
  runUntilOutcome();
  const Lines expected = kMergedReplies + kDeviceIdHandled +
                         Lines{"3 Invalid platform ID version: got 2, expected 3",
                               "5 Firmware on the printer is already up-to-date."} +
                         kTransportGone;
  EXPECT_EQ(log(), expected);
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "DlUd"));
}

TEST_F(UpdateTest, ControllerIsReadyForAnotherDownloadAfterAFailure) {
  startPrinter({"merge", "fail-burn"}, {"--faulty-conversations", "1"});
  download();
  runUntilOutcome();
  EXPECT_THAT(takeEvents(), ElementsAre("FwDl 1", "FwDl 1", "FwDl 1", "DlNo"));
  download();
  runUntilOutcome();
  EXPECT_EQ(takeEvents(), kThreeReadsThenOk);
  EXPECT_EQ(stopPrinter(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate + kReceivedUpdate);
}

TEST_F(UpdateTest, PrinterThatServesSomebodyElseMakesTheProgramWait) {
  startPrinter({"silence@status-off"}, {"--faulty-conversations", "1"});
  download();
  holdUntilPrinter("fault", "Async read request for 16 bytes.");
  FirmwareDownloader second;
  downloadFirmwareThroughNetwork(loopbackAddress(mPrinter->port()), second);
  EXPECT_THAT(mPrinter->entries("connected"), testing::SizeIs(1));
  mDownloader.reset();
  runUntilOutcome();
  EXPECT_EQ(takeEvents(), kThreeReadsThenOk);
}

}  // namespace
