// How the program ends is no matter to the printer: the kernel's driver gets its interface back.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>

#include "AsOtherUser.h"
#include "OtherProgram.h"
#include "PollRunLoop.h"
#include "UsbHost.h"
#include "UsbPrinterProcess.h"
#include "UsbSysfs.h"
#include "platform/Assertion.h"
#include "platform/libusb/LibusbRegistry.h"

namespace {

// What a process has that is about to end: both interfaces of a printer that neither answers nor
// takes any more, with a transfer under way in each direction.
struct BusyProgram {
  BusyProgram() {
    device = host.awaitPrinter();
    acl = host.openInterface(device, UsbHost::kPrinterClass);
    ews = host.openInterface(device, UsbHost::kVendorClass);
    host.startWrite(*acl, image, writing, 0);
    host.startRead(*acl, answer, reading, 0);
    loop.runFor(std::chrono::milliseconds(50));
  }

  PollRunLoop loop;
  std::unique_ptr<platform::UsbRegistry> registry = platform::makeLibusbRegistry(loop);
  UsbHost host{*registry, loop,
               [this](const std::function<bool()>& done) { return loop.runUntil(done); }};
  std::string image = kStatusOff + std::string(1 << 20, 'x');
  std::string answer = std::string(512, '\0');
  TransferRecorder writing;
  TransferRecorder reading;
  platform::io_service_t device = 0;
  std::unique_ptr<platform::UsbInterfaceObject> acl;
  std::unique_ptr<platform::UsbInterfaceObject> ews;
};

// A program that looks for printers, as it does at its start.
void startLooking(std::uint16_t product = 0x0C28) {
  PollRunLoop loop;
  const auto registry = platform::makeLibusbRegistry(loop);
  const auto port = registry->createNotificationPort();
  port->addTo(loop);
  platform::io_iterator_t iterator = 0;
  EXPECT_EQ(registry->addMatchingNotification(
                *port, "IOServiceFirstMatch", UsbHost::printers(0x3A71, product),
                [](void*, platform::io_iterator_t) {}, nullptr, iterator),
            platform::kIOReturnSuccess);
}

// Without end in all but name, which the compiler would object to.
int overflow(volatile char* above, int depth = 0) {
  volatile char frame[4096];
  frame[0] = above == nullptr ? '\0' : above[0];
  return depth < 0 ? 0 : overflow(frame, depth + 1) + frame[0];
}

class UsbExitTest : public testing::Test {
 protected:
  UsbExitTest() { awaitDriver("usblp"); }

  void awaitDriver(const std::string& driver) {
    EXPECT_TRUE(PollRunLoop().runUntil([&] { return kernelDriver() == driver; })) << driver;
  }

  // The status of a process that uses the printer and then does this. The printer's interface is
  // its own just before.
  int endBy(const std::function<void()>& last) {
    int ready[2];
    EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
      const rlimit noCore{0, 0};
      setrlimit(RLIMIT_CORE, &noCore);
      auto* const program = new BusyProgram;  // stays as it is to the end
      const bool isBusy = program->writing.ends().empty() && program->reading.ends().empty();
      const char driver = isBusy && kernelDriver() == "usbfs" ? 'y' : 'n';
      if (write(ready[1], &driver, 1) != 1) _exit(98);
      last();
      _exit(99);
    }
    close(ready[1]);
    char isItsOwn = '?';
    EXPECT_EQ(read(ready[0], &isItsOwn, 1), 1);
    EXPECT_EQ(isItsOwn, 'y');
    close(ready[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }

  void expectSignal(int number, const std::function<void()>& last) {
    const int status = endBy(last);
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), number);
    EXPECT_EQ(kernelDriver(), "usblp");
  }

  void expectExit(int code, const std::function<void()>& last) {
    const int status = endBy(last);
    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), code);
    EXPECT_EQ(kernelDriver(), "usblp");
  }

  void endByKill() {
    const int status = endBy([] { kill(getpid(), SIGKILL); });
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(kernelDriver(), "");
  }

  UsbPrinterProcess mPrinter{{"--fault", "hang@status-off"}};
};

TEST_F(UsbExitTest, ExitGivesThePrinterBack) {
  expectExit(1, [] { std::exit(1); });
}

TEST_F(UsbExitTest, AnAbortGivesThePrinterBack) {
  expectSignal(SIGABRT, [] { std::abort(); });
  expectSignal(SIGABRT, [] { std::terminate(); });
}

TEST_F(UsbExitTest, AFailedAssertionGivesThePrinterBack) {
  expectSignal(SIGABRT, [] { platform::assertAt(false, "a", "b", "c", 1); });
}

TEST_F(UsbExitTest, AFaultGivesThePrinterBack) {
  expectSignal(SIGSEGV, [] { *static_cast<volatile char*>(nullptr) = 'x'; });
  expectSignal(SIGILL, [] { __builtin_trap(); });
}

TEST_F(UsbExitTest, AnEndlessRecursionGivesThePrinterBack) {
  expectSignal(SIGSEGV, [] { overflow(nullptr); });
}

TEST_F(UsbExitTest, SignalsGiveThePrinterBack) {
  for (const int number : {SIGTERM, SIGQUIT, SIGPIPE, SIGSEGV, SIGSYS, SIGXCPU, SIGUSR1}) {
    SCOPED_TRACE(strsignal(number));
    expectSignal(number, [number] { kill(getpid(), number); });
  }
}

TEST_F(UsbExitTest, WhoHandlesAFaultStillDoes) {
  struct sigaction action = {};
  action.sa_handler = [](int) { _exit(7); };
  struct sigaction previous;
  sigaction(SIGSEGV, &action, &previous);
  expectExit(7, [] { *static_cast<volatile char*>(nullptr) = 'x'; });
  sigaction(SIGSEGV, &previous, nullptr);
}

TEST_F(UsbExitTest, WhoHandlesOrIgnoresATerminationStillDoes) {
  struct sigaction previous;
  for (const auto handler : {SIG_IGN, +[](int) {}}) {
    struct sigaction action = {};
    action.sa_handler = handler;
    sigaction(SIGTERM, &action, &previous);
    const int status = endBy([] {
      kill(getpid(), SIGTERM);
      _exit(kernelDriver() == "usbfs" ? 5 : 6);
    });
    EXPECT_EQ(WEXITSTATUS(status), 5);
    sigaction(SIGTERM, &previous, nullptr);
    startLooking();
  }
}

TEST_F(UsbExitTest, AProcessThatItStartsGivesNothingBack) {
  expectExit(3, [] {
    const pid_t child = fork();
    if (child == 0) std::exit(0);
    waitpid(child, nullptr, 0);
    std::exit(kernelDriver() == "usbfs" ? 3 : 4);
  });
}

// Killed. ---------------------------------------------------------------------------------------

TEST_F(UsbExitTest, WhatWasLeftByAKillIsGivenBackAtTheNextStart) {
  endByKill();
  startLooking();
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbExitTest, WhatWasLeftByAKillIsGivenBackByTheNextUse) {
  endByKill();
  PollRunLoop loop;
  const auto registry = platform::makeLibusbRegistry(loop);
  UsbHost host(*registry, loop,
               [&](const std::function<bool()>& done) { return loop.runUntil(done); });
  host.interfaceObject(host.awaitPrinter(), UsbHost::kVendorClass)->open();
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbExitTest, OtherDevicesAreLeftAlone) {
  endByKill();
  startLooking(0x0C29);
  EXPECT_EQ(kernelDriver(), "");
}

TEST_F(UsbExitTest, WhatAnotherProgramHasIsLeftToIt) {
  endByKill();
  {
    const OtherProgram other("VP000001", 1);
    startLooking();
    EXPECT_EQ(kernelDriver(), "usbfs");
  }
  startLooking();
  EXPECT_EQ(kernelDriver(), "usblp");
}

TEST_F(UsbExitTest, WithoutARightNothingIsGivenBackAndNothingSaid) {
  endByKill();
  {
    const AsOtherUser nobody;
    startLooking();
  }
  EXPECT_EQ(kernelDriver(), "");
}

}  // namespace
