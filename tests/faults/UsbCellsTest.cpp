// Every cell of an update over USB, with the whole program on one side and a printer on a bus of
// calls on the other.
#include <gmock/gmock.h>

#include <fstream>

#include "Application.h"
#include "BusPrinter.h"
#include "CellProcess.h"
#include "DownloadFixture.h"
#include "TemporaryDirectory.h"
#include "UsbCells.h"

namespace {

using std::chrono::milliseconds;

// One cell from its beginning to its end: the update that goes wrong, and the one after it.
class UsbCellRun {
 public:
  explicit UsbCellRun(const UsbCell& cell) : mCell(cell) {
    std::ofstream(mResources.path() / "product.brand.bin", std::ios::binary) << firmware200();
  }

  void run() {
    const std::size_t descriptors = openDescriptors();
    if (mCell.verdict == Verdict::Aborts) {
      expectAbort(
          mCell, mResources.path().string(),
          [this](Application& application, const std::function<void()>& begin) {
            BusPrinter printer(application);
            printer.plugIn(device());
            application.select(1);
            begin();
            updateBadly(application, printer);
          },
          [](const Lines& lines) { return lines; });
    }
    Application application(mResources.path().string());
    EXPECT_EQ(application.run([&] { update(application); }), 0);
    EXPECT_THAT(application.usb().problems(), testing::IsEmpty());
    EXPECT_EQ(application.held(), "0 watches, 0 timers, 0 updates");
    EXPECT_EQ(openDescriptors(), descriptors);
  }

 private:
  FakeUsbDevice device() const {
    FakeUsbDevice device = fakePrinter();
    auto& pipes = device.interfaces[0].pipes;
    if (mCell.fault == UsbFault::NoOutPipe) pipes = {inPipe()};
    if (mCell.fault == UsbFault::NoInPipe) pipes = {outPipe()};
    if (mCell.fault == UsbFault::InPipeFirst) pipes = {inPipe(), outPipe()};
    if (mCell.fault == UsbFault::NoPrinterInterface) device.interfaces = {};
    return device;
  }

  void update(Application& application) {
    BusPrinter printer(application);
    if (mCell.verdict == Verdict::Aborts) {
      printer.plugIn(fakePrinter());
    } else {
      printer.plugIn(device());
      ASSERT_TRUE(application.select(1));
      const std::string before = application.held();
      updateBadly(application, printer);
      expectOutcome(application, printer);
      EXPECT_EQ(application.held(), before);
      EXPECT_FALSE(printer.isTransferring());
    }
    updateWell(application, printer);
  }

  void updateBadly(Application& application, BusPrinter& printer) {
    prepare(application, printer);
    if (mCell.verdict == Verdict::NotStarted) {
      EXPECT_FALSE(application.download());
      return;
    }
    EXPECT_TRUE(application.download());
    strike(application, printer);
    printer.serveAll();
    if (printer.isTransferring()) passTimeOut(application);
  }

  // What is wrong before the update begins.
  void prepare(Application& application, BusPrinter& printer) {
    switch (mCell.fault) {
      case UsbFault::UnplugBefore:
        if (mCell.step == 0) printer.unplug();
        application.settle();
        break;
      case UsbFault::Call:
        if (mCell.step == 1) application.usb().script(mCell.call, mCell.result);
        break;
      case UsbFault::ClaimedElsewhere:
        claim(application, printer, true);
        break;
      case UsbFault::ZeroPackets:
        printer.setPackets(BusPrinter::Packets::AfterEmptyOnes);
        break;
      case UsbFault::BytePackets:
        printer.setPackets(BusPrinter::Packets::OfOneByte);
        break;
      case UsbFault::OnePacket:
        printer.setPackets(BusPrinter::Packets::ResponseWithDeviceId);
        break;
      case UsbFault::ExcessPacket:
        printer.addExcess(mCell.step);
        break;
      case UsbFault::Stale:
        printer.sayStale(mCell.reply);
        break;
      case UsbFault::Reply:
        if (mCell.step == 3) printer.setResponse(mCell.reply);
        if (mCell.step == 8) printer.setBurnReply(mCell.reply);
        break;
      default:
        break;
    }
  }

  // What goes wrong in its step.
  void strike(Application& application, BusPrinter& printer) {
    switch (mCell.fault) {
      case UsbFault::UnplugBefore:
        EXPECT_TRUE(reachEndOfStepBefore(printer));
        printer.unplug();
        break;
      case UsbFault::Call:
        if (mCell.step == 1) break;
        EXPECT_TRUE(reachEndOfStepBefore(printer));
        application.usb().script(mCell.call, mCell.result);
        break;
      case UsbFault::UnplugDuring:
        EXPECT_TRUE(printer.serveUntil(mCell.step));
        if (!printer.transfer().isRead) printer.take(printer.transfer().written.size() / 2);
        printer.unplug();
        break;
      case UsbFault::End:
        EXPECT_TRUE(printer.serveUntil(mCell.step));
        if (mCell.result == platform::kIOUSBPipeStalled) printer.fallSilent();
        application.usb().failTransfer(mCell.result);
        break;
      case UsbFault::EndHalfway:
        EXPECT_TRUE(printer.serveUntil(mCell.step));
        printer.take(printer.transfer().written.size() / 2);
        application.usb().failTransfer(mCell.result);
        break;
      case UsbFault::TimeOut:
        EXPECT_TRUE(printer.serveUntil(mCell.step));
        printer.fallSilent();
        passTimeOut(application);
        break;
      case UsbFault::ShortWrite:
      case UsbFault::EmptyWrite: {
        EXPECT_TRUE(printer.serveUntil(mCell.step));
        const std::size_t size =
            mCell.fault == UsbFault::EmptyWrite ? 0 : printer.transfer().written.size() - 1;
        printer.take(size);
        printer.complete(size);
        break;
      }
      default:
        break;
    }
  }

  // The transfer of the step before is complete, and the program does not know yet.
  bool reachEndOfStepBefore(BusPrinter& printer) {
    return printer.serveUntil(mCell.step - 1) && printer.serveOne();
  }

  // The last millisecond counts.
  void passTimeOut(Application& application) {
    application.pass(milliseconds(mCell.milliseconds - 1));
    EXPECT_EQ(application.outcome(), "");
    EXPECT_EQ(application.onScreen(), "[PrinterSelectWindow] ProgressSheet");
    application.pass(milliseconds(1));
  }

  void claim(Application& application, const BusPrinter& printer, bool isClaimed) {
    application.usb().claimElsewhere(application.usb().interfaceOf(printer.service()), isClaimed);
  }

  void expectOutcome(Application& application, BusPrinter& printer) {
    application.settle();
    EXPECT_EQ(joined(application.log()), joined(mCell.log));
    switch (mCell.verdict) {
      case Verdict::NotStarted:
        EXPECT_EQ(application.outcome(), "");
        break;
      case Verdict::Updated:
        EXPECT_EQ(application.outcome(), "DlOk");
        break;
      default:
        EXPECT_EQ(application.outcome(), "DlNo");
        EXPECT_EQ(application.onScreen(), "[PrinterSelectWindow] [ProgressSheet] FailedSheet");
        EXPECT_TRUE(application.closeAlert());
        EXPECT_EQ(printer.position(), mCell.position);
        break;
    }
    EXPECT_EQ(application.onScreen(), "PrinterSelectWindow");
  }

  void updateWell(Application& application, BusPrinter& printer) {
    const bool isNew =
        mCell.afterwards == Afterwards::Updated || mCell.afterwards == Afterwards::Unannounced;
    if (mCell.fault == UsbFault::ClaimedElsewhere) claim(application, printer, false);
    unsigned row = 1;
    if (mCell.verdict != Verdict::Aborts && mCell.needsReplug()) {
      printer.unplug();
      printer.plugIn(fakePrinter());
      row = 2;
    }
    EXPECT_FALSE(printer.hasMoreToSay());
    printer.setPackets(BusPrinter::Packets::Whole);
    ASSERT_TRUE(application.select(row) && application.download());
    printer.serveAll();
    EXPECT_EQ(application.outcome(), isNew ? "DlUd" : "DlOk");
    EXPECT_EQ(printer.version(), "200");
  }

  const UsbCell& mCell;
  TemporaryDirectory mResources;
};

void runUsbCells(const std::string& table) {
  std::size_t count = 0;
  for (const UsbCell& cell : usbCells()) {
    if (cell.table != table) continue;
    SCOPED_TRACE(nameOf(cell));
    UsbCellRun(cell).run();
    ++count;
  }
  EXPECT_NE(count, 0u);
}

TEST(FaultsOnUsb, PrinterIsUnplugged) { runUsbCells("unplugged"); }
TEST(FaultsOnUsb, PipesStall) { runUsbCells("stalls"); }
TEST(FaultsOnUsb, NothingHappensInTime) { runUsbCells("no answer in time"); }
TEST(FaultsOnUsb, BusFails) { runUsbCells("bus errors"); }
TEST(FaultsOnUsb, SystemRefuses) { runUsbCells("refused by the system"); }
TEST(FaultsOnUsb, InterfaceIsNotOpened) { runUsbCells("not opened"); }
TEST(FaultsOnUsb, WritesAreShort) { runUsbCells("short writes"); }
TEST(FaultsOnUsb, PacketsAreCutInAnyWay) { runUsbCells("packets"); }
TEST(FaultsOnUsb, AnswersAreTooLong) { runUsbCells("surplus on USB"); }
TEST(FaultsOnUsbDeathTest, AnswersAreLate) { runUsbCells("late answers on USB"); }
TEST(FaultsOnUsbDeathTest, AnswersAreWrong) { runUsbCells("wrong answers on USB"); }

}  // namespace
