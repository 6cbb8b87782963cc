#include "Printer.h"
#include "PrinterBench.h"

namespace {

using namespace std::chrono_literals;
using namespace virtualprinter;
using testing::ElementsAre;
using testing::IsEmpty;

class PrinterTest : public PrinterBench {
 protected:
  PrinterTest() { mSettings.deviceId.reset(); }

  std::string deviceId() { return printer().deviceId(printer().faultsOf(1)); }
};

TEST_F(PrinterTest, DeviceIdIsMadeOfItsSettings) {
  EXPECT_EQ(deviceId(),
            "MFG:Veltra;CMD:PJL,ACL;MDL:KX350T;CLS:PRINTER;DES:Veltra KX350T;SN:VP000001;"
            "LIC:QT725013;FWVER:00000100;");
}

TEST_F(PrinterTest, DeviceIdMayLackFields) {
  fault("no-mdl");
  fault("no-lic");
  fault("no-fwver");
  EXPECT_EQ(deviceId(), "MFG:Veltra;CMD:PJL,ACL;CLS:PRINTER;DES:Veltra KX350T;SN:VP000001;");
}

TEST_F(PrinterTest, DeviceIdMayBeNoText) {
  fault("bad-utf8");
  EXPECT_EQ(deviceId(),
            "MFG:Veltra;CMD:PJL,ACL;MDL:KX350T;CLS:PRINTER;DES:\xff\xfe;SN:VP000001;LIC:QT725013;"
            "FWVER:00000100;");
}

TEST_F(PrinterTest, EmptyFieldsStay) {
  mSettings.lic = "";
  mSettings.fwver = "";
  EXPECT_EQ(deviceId(),
            "MFG:Veltra;CMD:PJL,ACL;MDL:KX350T;CLS:PRINTER;DES:Veltra KX350T;SN:VP000001;LIC:;"
            "FWVER:;");
}

TEST_F(PrinterTest, FaultsMayEndWithAConversation) {
  mSettings.faultyConversations = 1;
  fault("no-lic");
  EXPECT_NE(printer().faultsOf(1).find(FaultKind::NoLic), nullptr);
  EXPECT_EQ(printer().faultsOf(2).find(FaultKind::NoLic), nullptr);
}

TEST_F(PrinterTest, ArrivesAndLeavesInOppositeOrder) {
  mSettings.deviceId = "MDL:K;";
  RecordingAttachment port("port", mLines);
  RecordingAttachment announcement("announcement", mLines);
  printer().addAttachment(port);
  printer().addAttachment(announcement);
  printer().start();
  printer().stop();
  EXPECT_THAT(takeJournal(),
              ElementsAre("port arrives", "announcement arrives", "ready device_id=\"MDL:K;\"",
                          "announcement leaves", "port leaves"));
}

class RestartTest : public PrinterBench {
 protected:
  RestartTest() : mPort("port", mLines) {}

  void burn() {
    printer().addAttachment(mPort);
    connect();
    hostUpdates();
    advance(500ms);
    takeJournal();
  }

  RecordingAttachment mPort;
};

TEST_F(RestartTest, LeavesWhenTheHostHasHungUpAndReturnsWithTheNewVersion) {
  burn();
  mConversation->hostFinished();
  EXPECT_EQ(mLines.size(), 1u);  // closed
  takeJournal();
  advance(0ms);
  EXPECT_THAT(takeJournal(), ElementsAre("port leaves", "restart seconds=3.0"));
  advance(2999ms);
  EXPECT_THAT(takeJournal(), IsEmpty());
  advance(1ms);
  EXPECT_THAT(takeJournal(),
              ElementsAre("port arrives", "ready device_id=\"MFG:V;MDL:K;FWVER:00000200;\""));
  EXPECT_EQ(printer().tally().returns, 1u);
}

TEST_F(RestartTest, HangsUpItselfWhenTheHostDoesNot) {
  burn();
  takeCalls();
  advance(999ms);
  EXPECT_THAT(takeCalls(), IsEmpty());
  advance(1ms);
  EXPECT_THAT(takeCalls(), ElementsAre("close"));
  EXPECT_THAT(takeJournal(), ElementsAre("closed connection=1 by=\"printer\" received=178 sent=54 "
                                         "position=\"after uel\"",
                                         "port leaves", "restart seconds=3.0"));
}

TEST_F(RestartTest, VersionIsAddedToADeviceIdWithoutOne) {
  mSettings.deviceId = "MDL:K;";
  burn();
  advance(10s);
  EXPECT_EQ(takeJournal().back(), "ready device_id=\"MDL:K;FWVER:00000200;\"");
}

TEST_F(RestartTest, UnendedVersionFieldIsEnded) {
  mSettings.deviceId = "MDL:K;FWVER:1";
  burn();
  advance(10s);
  EXPECT_EQ(takeJournal().back(), "ready device_id=\"MDL:K;FWVER:00000200;\"");
}

TEST_F(RestartTest, FailedBurnKeepsThePrinterWhereItIs) {
  fault("fail-burn");
  burn();
  mConversation->hostFinished();
  takeJournal();
  advance(10s);
  EXPECT_THAT(takeJournal(), IsEmpty());
  EXPECT_EQ(printer().tally().burnsFailed, 1u);
}

TEST_F(RestartTest, ForgottenBurnBringsTheOldFirmwareBack) {
  mSettings.deviceId = "MDL:K;FWVER:00000100;";
  fault("forget-burn");
  burn();
  EXPECT_EQ(printer().tally().burned, 1u);
  advance(10s);
  EXPECT_EQ(takeJournal().back(), "ready device_id=\"MDL:K;FWVER:00000100;\"");
  EXPECT_EQ(printer().tally().returns, 1u);
}

TEST_F(RestartTest, StoppingCancelsTheReturn) {
  burn();
  mConversation->hostFinished();
  advance(100ms);
  takeJournal();
  printer().stop();
  advance(10s);
  EXPECT_THAT(takeJournal(), ElementsAre("port leaves"));
}

TEST_F(RestartTest, TellsItsObserverOfEveryChange) {
  unsigned changes = 0;
  printer().setObserver([&](const Tally&) { ++changes; });
  burn();
  EXPECT_EQ(changes, 1u);  // burned
  mConversation->hostFinished();
  EXPECT_EQ(changes, 2u);  // conversation
  advance(10s);
  EXPECT_EQ(changes, 3u);  // return
}

}  // namespace
