// The window while the program hands an image to a printer that stops reading, or reads slowly: it
// sends for five seconds, and gives up.
#include <gmock/gmock.h>

#include <chrono>
#include <iostream>
#include <string>
#include <thread>
#include <utility>

#include "DesktopTest.h"
#include "Places.h"
#include "ScreenReader.h"

namespace {

using namespace std::chrono_literals;

constexpr char kBegins[] = "Async write request for 16777216 bytes.";
constexpr char kEnds[] = "Finalising the firmware download...";
constexpr char kFails[] = "General runtime error occurred during async task: Unable to write data";

class DuringASend : public DesktopTest {
 protected:
  explicit DuringASend(const std::string& fault = "hang@mid-image") {
    mPrinter = startPrinter("Office", {"--fault", fault, "--fault", "receive-buffer=65536"});
    const auto executable = copyInstallation();
    const auto image = output() / "product.brand.bin";
    desktop::ChildProcess make({builtProgram("firmware-image"), "make", "--version", "200",
                                "--size", "16777216", image.string()},
                               output() / "make.log");
    EXPECT_EQ(make.waitForExit(40s), 0);
    replaceFirmware(executable, image);
    std::filesystem::remove(image);
    startProgramAt(executable);
    startUpdate("Office");
    EXPECT_TRUE(waitForLog(kBegins));
  }

  bool isSending() const { return timesLogged(kFails) == 0 && timesLogged(kEnds) == 0; }

 private:
  std::unique_ptr<VirtualPrinterProcess> mPrinter;
};

// A window that sleeps meanwhile gives its one answer at the end.
TEST_F(DuringASend, AssistiveTechnologyIsAnswered) {
  EXPECT_GE(answersUntil([&] { return !isSending(); }), 10);
  answer("Close");
}

TEST_F(DuringASend, WindowIsPainted) {
  const auto place = labelWith("Office (").extents();
  const auto isPlain = [&] {
    return desktop().isPlain(place.x, place.y, place.width, place.height);
  };
  ASSERT_FALSE(isPlain());
  for (int i = 0; i < 3; ++i) {
    desktop().coverBriefly(place.x, place.y, place.width, place.height);
    EXPECT_TRUE(desktop::waitUntil([&] { return !isPlain(); }, 40s));
    EXPECT_TRUE(isSending());
  }
  keepPicture("painted");
  answer("Close");
}

TEST_F(DuringASend, HeldKeyDoesNotAnswerWhatComesAfterIt) {
  desktop().holdDown("Return");
  button("Close");
  std::this_thread::sleep_for(2s);
  EXPECT_TRUE(isOnScreen("push button", "Close"));
  desktop().letGo("Return");
  answer("Close");
}

TEST_F(DuringASend, ProgramEndsWithTheScreen) {
  desktop().killServer();
  EXPECT_TRUE(isSending());
  EXPECT_EQ(program().waitForExit(40s), 1);
}

// The image takes the printer four to five seconds.
class DuringASlowSend : public DuringASend {
 protected:
  DuringASlowSend() : DuringASend("slow=65536/19") {}
};

TEST_F(DuringASlowSend, BarIsSeenMoving) {
  desktop::ScreenReader reader;
  std::size_t values = 0;
  while (isSending()) {
    const std::size_t before = std::exchange(values, reader.values());
    if (values > before) keepPicture(std::to_string(values));
    desktop::pauseAfter(0ms);
  }
  std::cout << values << " values of the bar\n";
  EXPECT_GE(values, 2u);
}

}  // namespace
