// Whole downloads, one after the other: the input says what the printer sends, in which pieces,
// when there is room for more, and what the host refuses. After each step the program has sent and
// told what the model says; each download ends once, its log with it, and nothing of it is left. A
// good download follows whatever came before.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "DownloadEvents.h"
#include "DownloadModel.h"
#include "FakeBundle.h"
#include "FakeDeviceLocks.h"
#include "FakeEvents.h"
#include "FakeFiles.h"
#include "FakeNetwork.h"
#include "FakeRunLoop.h"
#include "FirmwareDownloader.h"
#include "LogRecorder.h"
#include "Printer.h"
#include "PrinterMessages.h"
#include "PrinterTalk.h"
#include "RecordingObserver.h"
#include "Script.h"
#include "platform/Text.h"

namespace {

using Awaits = DownloadModel::Awaits;

void require(bool holds) {
  if (!holds) std::abort();
}

class DownloadRun {
 public:
  DownloadRun() {
    mFiles.addDirectory("/resources");
    mFiles.addFile("/resources/product.brand.bin", kFirmware200);
    handleDownloadEvents(mEvents);
  }
  ~DownloadRun() { Printer::destroy(mPrinter); }
  DownloadRun(const DownloadRun&) = delete;
  DownloadRun& operator=(const DownloadRun&) = delete;

  // False when the program would end by assertion at the next step.
  bool step(Script& script) {
    const std::uint8_t code = script.take();
    const std::uint8_t operand = code >> 3;
    switch (code & 7) {
      case 0:
        if (mModel.awaits() == Awaits::Nothing) start(operand);
        break;
      case 1:
        if (mModel.awaits() == Awaits::Connection) connectionEnds(operand % 8 == 7);
        break;
      case 2:
        if (isConnected()) becomesWritable();
        break;
      case 3:
        if (isConnected()) arrives(script.take(operand));
        break;
      case 4:
        mTalk.sayNext(operand);
        break;
      case 5:
        if (isConnected()) arrives(mTalk.take(operand));
        break;
      case 6:
        mTalk.change(operand, script.take());
        break;
      default:
        if (operand % 8 == 7 && isConnected()) setSendFails(true);
        if (!takeTurn()) return false;
    }
    check();
    return true;
  }

  // From wherever the last one was left: what must come of a printer that does all it should.
  bool finishWell() {
    if (mModel.awaits() != Awaits::Nothing) return true;
    const std::size_t told = mModel.commands().size();
    mTalk.forget();
    start(0);
    connectionEnds(false);
    becomesWritable();
    becomesWritable();
    arrives(kDeviceIdResponse + kDeviceId100);
    takeTurn();
    takeTurn();
    for (int message = 0; message < 3; ++message) becomesWritable();
    arrives(kBurnResponse);
    takeTurn();
    check();
    return mModel.commands().size() == told + 1 && mModel.commands().back() == "DlOk";
  }

  // The program ends now.
  void leave() {
    const bool isRunning = mModel.awaits() != Awaits::Nothing;
    mDownloader.reset();
    require(!mNetwork.isOpen() && mLocks.granted() == 0);
    require(mEvents.commands() == mModel.commands());
    require(mEnds.size() == mModel.commands().size() + (isRunning ? 1 : 0));
    require(!isRunning || mEnds.back() == "ended Failed");
  }

 private:
  platform::Platform surfaces() {
    platform::Platform platform;
    platform.bundle = &mBundle;
    platform.files = &mFiles;
    platform.runLoop = &mRunLoop;
    platform.events = &mEvents;
    platform.network = &mNetwork;
    platform.deviceLocks = &mLocks;
    platform.downloadObserver = &mObserver;
    return platform;
  }

  bool isConnected() const {
    return mModel.awaits() != Awaits::Nothing && mModel.awaits() != Awaits::Connection;
  }

  void start(std::uint8_t how) {
    const bool isRefused = how % 8 == 6;
    const bool isTaken = how % 8 == 7;
    mLog.takeEntries();
    mTalk.forget();
    setSendFails(false);
    mNetwork.setConnectResult(isRefused ? 111 : 0);
    mLocks.setUpdating(isTaken ? "somebody (process 7)" : "");
    mPrinter->download(*mDownloader);
    mModel.start(!isRefused && !isTaken);
  }

  void setSendFails(bool fails) {
    mNetwork.setSendResult(fails ? 32 : 0);
    mModel.setSendFails(fails);
  }

  void connectionEnds(bool fails) {
    const int refused = 111;
    if (fails) setSendFails(true);
    require(mNetwork.connectionEnds(fails ? &refused : nullptr));
    mModel.connectionEnds();
  }

  void becomesWritable() {
    mNetwork.becomesWritable();
    mModel.becomesWritable();
  }

  void arrives(const std::string& bytes) {
    require(mNetwork.arrives({bytes.begin(), bytes.end()}));
    mModel.arrives(bytes);
  }

  bool takeTurn() {
    if (mModel.awaits() != Awaits::Turn) return true;
    if (mModel.nextTurnIsFatal()) return false;
    const std::size_t told = mEvents.commands().size();
    const bool isUnknown = mModel.nextTurnIsUnknown();
    require(mEvents.deliverNext());
    if (!isUnknown) {
      mModel.takeTurn();
    } else {
      const bool isOver = mEvents.commands().size() > told;
      mModel.takeUnknownTurn(isOver ? mEvents.commands().back() : "");
    }
    return true;
  }

  void check() {
    require(mEvents.commands() == mModel.commands());
    require(mNetwork.sent().size() == mModel.sent().size());
    if (!mModel.sent().empty()) {
      const auto& sent = mNetwork.sent().back();
      require(std::string(sent.begin(), sent.end()) == mModel.sent().back());
    }
    require(mEvents.queued() == (mModel.awaits() == Awaits::Turn ? 1u : 0u));
    require(mEnds.size() == mModel.commands().size());
    require(mNetwork.isOpen() == (mModel.awaits() != Awaits::Nothing));
    if (mModel.awaits() == Awaits::Nothing && !mModel.commands().empty()) checkEnd();
  }

  void checkEnd() {
    const std::string& command = mModel.commands().back();
    require(mEnds.back() == (command == "DlOk"   ? "ended Succeeded"
                             : command == "DlUd" ? "ended UpToDate"
                                                 : "ended Failed"));
    const std::vector<LogEntry>& log = mLog.entries();
    require(log.size() >= 2 && log.back().text == "Cleaning up network transport.");
    const LogEntry& reason = log[log.size() - 2];
    if (command == "DlOk") {
      require(reason.text == "Firmware download is complete, the printer will restart.");
    } else if (command == "DlUd") {
      require(reason.text == "Firmware on the printer is already up-to-date.");
    } else {
      require(reason.priority == 3);
    }
    require(mLocks.granted() == 0);
    require(mRunLoop.timers() == 0 && mRunLoop.putOff() == 0);
  }

  std::vector<std::string> mEnds;
  RecordingObserver mObserver{[this](const std::string& call) {
    if (call.starts_with("ended ")) mEnds.push_back(call);
  }};
  FakeBundle mBundle;
  FakeFiles mFiles;
  FakeRunLoop mRunLoop;
  FakeEvents mEvents;
  FakeNetwork mNetwork;
  FakeDeviceLocks mLocks;
  LogRecorder mLog{surfaces()};
  PrinterTalk mTalk;
  DownloadModel mModel;
  std::unique_ptr<FirmwareDownloader> mDownloader = std::make_unique<FirmwareDownloader>();
  Printer* mPrinter = Printer::create(
      platform::Text::fromUtf8("Office"),
      platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2, 7, 0, 0, 0, 0, 0, 0, 0, 0}));
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script script(data, size);
  DownloadRun run;
  while (!script.isOver()) {
    if (!run.step(script)) return 0;
  }
  require(run.finishWell());
  run.leave();
  return 0;
}
