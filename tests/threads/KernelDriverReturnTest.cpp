#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdarg>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "FakeRunLoop.h"
#include "NoDescriptors.h"
#include "platform/libusb/GiveBackAtExit.h"
#include "platform/libusb/KernelDriverReturn.h"

namespace {

// The kernel's side. Nothing in it puts the threads in an order, which would hide that they have
// none.
std::atomic<bool> printerAnswers;
std::array<std::atomic<int>, 256> connects;  // of each interface

int connectsOf(int interface) {
  return connects.at(static_cast<std::size_t>(interface)).load(std::memory_order_relaxed);
}

}  // namespace

// Takes the place of the C library's.
extern "C" int ioctl(int fd, unsigned long request, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, request);
  const auto* const asked = va_arg(arguments, const usbdevfs_ioctl*);
  va_end(arguments);
  if (request != USBDEVFS_IOCTL || asked->ioctl_code != static_cast<int>(USBDEVFS_CONNECT))
    return -1;
  if (fcntl(fd, F_GETFD) < 0) return -1;
  const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!printerAnswers.load(std::memory_order_relaxed)) {
    if (std::chrono::steady_clock::now() > giveUp) return -1;
    std::this_thread::yield();
  }
  connects.at(static_cast<std::size_t>(asked->ifno)).fetch_add(1, std::memory_order_relaxed);
  return 0;
}

namespace {

using platform::KernelDriverReturn;

class KernelDriverReturnTest : public testing::Test {
 protected:
  KernelDriverReturnTest() : mNode(open("/dev/null", O_RDWR | O_CLOEXEC)) {
    printerAnswers = true;
    for (auto& each : connects) each = 0;
  }
  ~KernelDriverReturnTest() override { close(mNode); }

  std::unique_ptr<KernelDriverReturn> giveBack(
      std::uint8_t interface, std::function<void()> ended = [] {}) {
    return std::make_unique<KernelDriverReturn>(mRunLoop, mNode, interface, std::move(ended));
  }

  FakeRunLoop mRunLoop;
  int mNode;
};

TEST_F(KernelDriverReturnTest, NobodyWaitsForAPrinterThatDoesNotAnswer) {
  printerAnswers = false;
  int ended = 0;
  std::unique_ptr<KernelDriverReturn> back;
  back = giveBack(3, [&] {
    ++ended;
    back.reset();
  });
  EXPECT_FALSE(mRunLoop.pollDescriptors());
  EXPECT_EQ(connectsOf(3), 0);
  printerAnswers = true;
  EXPECT_TRUE(mRunLoop.runUntil([&] { return ended > 0; }));
  EXPECT_EQ(connectsOf(3), 1);
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(mRunLoop.enabledWatches(), 0u);
}

TEST_F(KernelDriverReturnTest, ReturnsGoOnWhileOtherInterfacesAreNotedAndDropped) {
  int ended = 0;
  std::vector<std::unique_ptr<KernelDriverReturn>> returns(50);
  for (auto& each : returns) {
    each = giveBack(1, [&] {
      ++ended;
      each.reset();
    });
    platform::giveBackAtExit(mNode, 2);
    platform::dropFromExit(mNode, 2);
  }
  EXPECT_TRUE(mRunLoop.runUntil([&] { return ended == 50; }));
  EXPECT_EQ(connectsOf(1), 50);
  EXPECT_EQ(connectsOf(2), 0);
}

TEST_F(KernelDriverReturnTest, WhoNoLongerWaitsIsToldNothingAndTheDriverIsBack) {
  printerAnswers = false;
  int ended = 0;
  for (int i = 0; i < 20; ++i) giveBack(4, [&] { ++ended; });
  EXPECT_EQ(mRunLoop.enabledWatches(), 0u);
  printerAnswers = true;
  EXPECT_TRUE(mRunLoop.runUntil([] { return connectsOf(4) == 20; }));
  EXPECT_EQ(ended, 0);
}

TEST_F(KernelDriverReturnTest, WithoutDescriptorsTheDriverIsBackAtOnce) {
  int ended = 0;
  std::unique_ptr<KernelDriverReturn> back;
  {
    const NoDescriptors none;
    back = giveBack(5, [&] { ++ended; });
  }
  EXPECT_EQ(connectsOf(5), 1);
  EXPECT_EQ(ended, 0);
  mRunLoop.advance(std::chrono::milliseconds(0));
  EXPECT_EQ(ended, 1);
}

}  // namespace
