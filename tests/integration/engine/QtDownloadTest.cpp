// Downloads on the run loop and the event queue that the program ships with.
#include <fstream>

#include "CoreApplication.h"
#include "DownloadEvents.h"
#include "DownloadFixture.h"
#include "NetworkTransport.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixNetwork.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtEvents.h"
#include "platform/qt/QtRunLoop.h"

namespace {

using namespace platform::literals;
using testing::ElementsAre;
using testing::IsEmpty;

class QtDownloadTest : public testing::Test {
 protected:
  QtDownloadTest() : mLog(surfaces()) {
    mBundle.setResourcesDirectory(mResources.path());
    std::ofstream(mResources.path() / "product.brand.bin", std::ios::binary) << firmware200();
    handleDownloadEvents(*mEvents);
    const platform::EventSpec commands[] = {{"cmds"_4cc, 1}};
    platform::EventHandlerRef installed = 0;
    mEvents->installHandler(platform::kApplicationTarget, commands, handleCommand, this, installed);
  }

  platform::Platform surfaces() {
    platform::Platform platform;
    platform.events = mEvents.get();
    platform.files = mFiles.get();
    platform.bundle = &mBundle;
    platform.network = mNetwork.get();
    platform.runLoop = mRunLoop.get();
    return platform;
  }

  // The replies come after what the program has to do meanwhile: the order in which the loop looks
  // at sockets then makes no difference to the log.
  void startPrinter(std::vector<std::string> faults) {
    faults.insert(faults.end(), {"merge", "delay@id-request=100"});
    mPrinter = std::make_unique<VirtualPrinterProcess>(printerOptions(faults));
  }

  // Runs the application's loop until a command has been issued, or so long.
  void download(std::chrono::milliseconds atMost = std::chrono::seconds(20)) {
    mDownloader.emplace();
    downloadFirmwareThroughNetwork(loopbackAddress(mPrinter->port()), *mDownloader);
    const auto limit = mRunLoop->startTimer(atMost, false, [this] { mLoop.quit(); });
    mEvents->runApplicationEventLoop();
  }

  static platform::OSStatus handleCommand(platform::EventHandlerCallRef,
                                          const platform::Event& event, void* userData) {
    auto* const self = static_cast<QtDownloadTest*>(userData);
    platform::HICommand command;
    event.getParameter("----"_4cc, command);
    self->mCommands.push_back(fourCharText(command.commandId));
    self->mLoop.quit();
    return platform::noErr;
  }

  CoreApplication mApplication;
  platform::QtEventLoop mLoop;
  std::unique_ptr<platform::RunLoop> mRunLoop = platform::makeQtRunLoop(mLoop);
  std::unique_ptr<platform::QtEvents> mEvents = platform::makeQtEvents(mLoop);
  std::unique_ptr<platform::Files> mFiles = platform::makePosixFiles();
  std::unique_ptr<platform::Network> mNetwork = platform::makePosixNetwork(*mRunLoop);
  FakeBundle mBundle;
  TemporaryDirectory mResources;
  LogRecorder mLog;
  std::optional<FirmwareDownloader> mDownloader;
  std::unique_ptr<VirtualPrinterProcess> mPrinter;
  std::vector<std::string> mCommands;
};

TEST_F(QtDownloadTest, PrinterBurnsTheImage) {
  startPrinter({});
  download();
  EXPECT_THAT(mCommands, ElementsAre("DlOk"));
  EXPECT_EQ(mLog.lines(), kMergedReplies + kAwaitingBurn + arriving(16) + kBurned + kTransportGone);
  EXPECT_EQ(mPrinter->stop(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate);
}

TEST_F(QtDownloadTest, FailedBurnIsTold) {
  startPrinter({"fail-burn"});
  download();
  EXPECT_THAT(mCommands, ElementsAre("DlNo"));
  EXPECT_EQ(mPrinter->stop(), 0);
  EXPECT_EQ(mPrinter->receivedMessages(), kReceivedUpdate);
}

TEST_F(QtDownloadTest, RefusedConnectionIsTold) {
  startPrinter({"refuse"});
  download();
  EXPECT_THAT(mCommands, ElementsAre("DlNo"));
  EXPECT_EQ(mLog.lines(), kStatusOffWritten + kWriteFailed + kTransportGone);
}

TEST_F(QtDownloadTest, SilentPrinterIsWaitedForUntilTheDownloadIsDropped) {
  startPrinter({"silence@status-off"});
  download(std::chrono::milliseconds(300));
  EXPECT_THAT(mCommands, IsEmpty());
  mDownloader.reset();
  EXPECT_EQ(mLog.lines(), kAwaitingResponse + kDropped);
}

}  // namespace
