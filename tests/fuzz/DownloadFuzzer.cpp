// Whole downloads, one after the other: the input says what the printer sends, in which pieces,
// when there is room for more, and what the host refuses. After each step the program has sent and
// told what the model says; each download ends once, its log with it, and nothing of it is left. A
// good download follows whatever came before.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FakeNetwork.h"
#include "LogRecorder.h"
#include "ModelledDownloads.h"
#include "Printer.h"
#include "PrinterMessages.h"
#include "Script.h"
#include "platform/Text.h"

namespace {

class DownloadRun : private ModelledDownloads {
 public:
  DownloadRun() = default;
  ~DownloadRun() {
    mDownloader.reset();
    Printer::destroy(mPrinter);
  }
  DownloadRun(const DownloadRun&) = delete;
  DownloadRun& operator=(const DownloadRun&) = delete;

  // False when the program would end by assertion at the next step.
  bool step(Script& script) {
    const std::uint8_t code = script.take();
    const std::uint8_t operand = code >> 3;
    switch (code & 7) {
      case 0:
        if (!isRunning()) start(operand);
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
    if (isRunning()) return true;
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

  void leave() {
    end();
    require(!mNetwork.isOpen());
  }

 private:
  platform::Platform surfacesWithNetwork() {
    platform::Platform platform = surfaces();
    platform.network = &mNetwork;
    return platform;
  }

  bool isConnected() const { return isRunning() && mModel.awaits() != Awaits::Connection; }

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

  void check() {
    checkOutcomes();
    require(mNetwork.sent().size() == mModel.sent().size());
    if (!mModel.sent().empty()) {
      const auto& sent = mNetwork.sent().back();
      require(std::string(sent.begin(), sent.end()) == mModel.sent().back());
    }
    require(mEvents.queued() == (mModel.awaits() == Awaits::Turn ? 1u : 0u));
    require(mNetwork.isOpen() == isRunning());
    if (!isRunning() && !mModel.commands().empty()) checkLog();
  }

  void checkLog() {
    const std::string& command = mModel.commands().back();
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
  }

  FakeNetwork mNetwork;
  LogRecorder mLog{surfacesWithNetwork()};
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
