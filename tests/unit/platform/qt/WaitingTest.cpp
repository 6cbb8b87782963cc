// The windows while the program waits in the middle of a send: they live, and the program hears
// afterwards what was done to them.
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QApplication>
#include <QTimer>
#include <array>
#include <chrono>

#include "FakeEvents.h"
#include "QtWindows.h"
#include "platform/RunLoop.h"

using namespace platform::literals;
using namespace std::chrono_literals;
using platform::noErr;
using platform::OSStatus;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Everything that the program is told goes to the commands, in words.
class QtWaiting : public QtWindows {
 protected:
  QtWaiting() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, mSockets.data()), 0);
    fillList(3);
    showMain();
    install({{"FwDl"_4cc, 1}, {"FwDl"_4cc, 2}}, platform::kApplicationTarget);
    install({{"wind"_4cc, 72}}, mMain);
    platform::ControlRef list = platform::ControlRef::None;
    EXPECT_EQ(toolkit().getControlById(mMain, {"lPrn"_4cc, 0}, list), noErr);
    install({{"cntl"_4cc, 154}}, list);
    platform::DataBrowserCallbacks callbacks;
    callbacks.itemNotification = noteSelection;
    EXPECT_EQ(toolkit().setDataBrowserCallbacks(list, callbacks), noErr);
    receiver = this;
  }
  ~QtWaiting() override {
    for (const int descriptor : mSockets) close(descriptor);
  }

  // Waits as the program does, and has something happen meanwhile. What it told the program by the
  // end of the wait.
  std::vector<std::string> whileWaiting(const std::function<void()>& happens) {
    QTimer::singleShot(0, [&] {
      happens();
      QTimer::singleShot(50, [this] { EXPECT_EQ(write(mSockets[1], "x", 1), 1); });
    });
    EXPECT_TRUE(mApplication->runLoop().waitUntilReady(mSockets[0],
                                                       platform::RunLoop::Interest::Readable,
                                                       std::chrono::steady_clock::now() + 20s));
    return mCommands;
  }

  void post(std::uint32_t kind) {
    std::unique_ptr<platform::Event> event;
    mApplication->events().createEvent("FwDl"_4cc, kind, event);
    mApplication->events().postToMainQueue(std::move(event));
  }

  auto say(const char* word) {
    return [this, word] { mCommands.emplace_back(word); };
  }

 private:
  void install(std::vector<platform::EventSpec> specs, const platform::EventTarget& target) {
    platform::EventHandlerRef installed = 0;
    mApplication->events().installHandler(target, specs, note, this, installed);
  }

  static OSStatus note(platform::EventHandlerCallRef, const platform::Event& event,
                       void* userData) {
    static_cast<QtWaiting*>(userData)->mCommands.push_back(fourCharText(event.eventClass()) + " " +
                                                           std::to_string(event.kind()));
    return noErr;
  }

  static void noteSelection(platform::ControlRef, platform::ItemId, std::uint32_t message) {
    receiver->mCommands.push_back("selection " + std::to_string(message));
  }

  inline static QtWaiting* receiver = nullptr;
  std::array<int, 2> mSockets{};
};

TEST_F(QtWaiting, WhatArisesComesAfterwardsInItsOrder) {
  post(1);
  std::unique_ptr<platform::RunLoop::Timer> timer;
  EXPECT_THAT(whileWaiting([&] {
                mApplication->runLoop().callLater(say("put off"));
                button("PrinterSelectWindow", "Down"_4cc)->click();
                list().setCurrentIndex(list().model()->index(1, 0));
                window("PrinterSelectWindow")->resize(window("PrinterSelectWindow")->size() * 2);
                action("quit"_4cc)->trigger();
                window("PrinterSelectWindow")->close();
                post(2);
                timer = mApplication->runLoop().startTimer(5ms, false, say("timer"));
              }),
              IsEmpty());
  settle();
  EXPECT_THAT(mCommands, ElementsAre("FwDl 1", "put off", "Down", "selection 14", "cntl 154",
                                     "quit", "wind 72", "FwDl 2", "timer"));
}

TEST_F(QtWaiting, WindowIsPainted) {
  class Paints : public QObject {
   public:
    int count = 0;

   private:
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++count;
      return false;
    }
  } paints;
  window("PrinterSelectWindow")->installEventFilter(&paints);
  whileWaiting([&] { window("PrinterSelectWindow")->update(); });
  EXPECT_EQ(paints.count, 1);
}

TEST_F(QtWaiting, AssistiveTechnologysPressComesAfterwards) {
  EXPECT_THAT(
      whileWaiting([&] { pressByAssistiveTechnology(*button("PrinterSelectWindow", "Down"_4cc)); }),
      IsEmpty());
  settle();
  EXPECT_THAT(mCommands, ElementsAre("Down"));
}

TEST_F(QtWaiting, BlockedButtonStaysSoWhateverComesAfterwards) {
  const platform::WindowRef progress = showSheet("ProgressSheet");
  whileWaiting([&] {
    pressByAssistiveTechnology(*button("PrinterSelectWindow", "Down"_4cc));
    action("Down"_4cc)->trigger();
  });
  toolkit().hideSheetWindow(progress);
  settle();
  EXPECT_THAT(mCommands, IsEmpty());
}

TEST_F(QtWaiting, ButtonThatASheetBlocksMeanwhileIssuesNothing) {
  whileWaiting([&] { button("PrinterSelectWindow", "Down"_4cc)->click(); });
  showSheet("ProgressSheet");
  EXPECT_THAT(mCommands, IsEmpty());
}

TEST_F(QtWaiting, ButtonThatGoesMeanwhileIssuesNothing) {
  const platform::WindowRef question = showSheet("ConfirmDownloadSheet");
  whileWaiting([&] { button("ConfirmDownloadSheet", "Yes "_4cc)->click(); });
  toolkit().disposeWindow(question);
  settle();
  EXPECT_THAT(mCommands, IsEmpty());
}

TEST_F(QtWaiting, QuitDuringADownloadIsAskedAboutAfterwards) {
  showSheet("ProgressSheet");
  const std::map<std::string, std::function<void()>> ways{
      {"menu", [this] { action("quit"_4cc)->trigger(); }},
      {"main window", [this] { window("PrinterSelectWindow")->close(); }},
      {"frame of the progress", [this] { window("ProgressSheet")->close(); }},
      {"session",
       [] {
         QEvent quit(QEvent::Quit);
         QCoreApplication::sendEvent(qApp, &quit);
       }},
  };
  for (const auto& [way, quit] : ways) {
    whileWaiting([&, quit = quit] {
      quit();
      quit();
    });
    EXPECT_FALSE(window("QuitSheet")->isVisible()) << way;
    settle();
    EXPECT_TRUE(window("QuitSheet")->isVisible()) << way;
    button("QuitSheet", "Keep"_4cc)->click();
    settle();
    EXPECT_FALSE(window("QuitSheet")->isVisible()) << way;
  }
  EXPECT_THAT(mCommands, IsEmpty());
}

TEST_F(QtWaiting, ClosedWindowIsAskedOnceAndCloses) {
  whileWaiting([&] { window("PrinterSelectWindow")->close(); });
  EXPECT_TRUE(window("PrinterSelectWindow")->isVisible());
  EXPECT_THAT(mCommands, IsEmpty());
  settle();
  EXPECT_THAT(mCommands, ElementsAre("wind 72"));
}

}  // namespace
