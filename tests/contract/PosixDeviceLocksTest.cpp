// Locks between processes, and what somebody does who means no good.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include "NoDescriptors.h"
#include "platform/posix/PosixDeviceLocks.h"

namespace {

using platform::Data;
using platform::DeviceUse;

class PosixDeviceLocks : public testing::Test {
 protected:
  // 240.…: of this process alone.
  PosixDeviceLocks() {
    const int number = getpid();
    mAddress = platform::makeData({16, 2, 0x23, 0x8C, 240, static_cast<std::uint8_t>(number >> 16),
                                   static_cast<std::uint8_t>(number >> 8),
                                   static_cast<std::uint8_t>(number), 0, 0, 0, 0, 0, 0, 0, 0});
    mName = "fwupdate/240." + std::to_string(number >> 16 & 255) + "." +
            std::to_string(number >> 8 & 255) + "." + std::to_string(number & 255) + ":9100";
  }

  bool isLocked() {
    const auto lock = platform::makePosixDeviceLocks()->lock(mAddress, DeviceUse::Update, mHolder);
    EXPECT_EQ(lock == nullptr, !mHolder.empty());
    return lock == nullptr;
  }

  // A socket of the lock's name.
  int squat() const {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(&address.sun_path[1], mName.data(), mName.size());
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address),
                     static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + mName.size())),
              0);
    return socket;
  }

  Data mAddress;
  std::string mName;
  std::string mHolder;
};

// A process that has the lock until it is killed.
class Holding {
 public:
  explicit Holding(const Data& address) {
    std::array<int, 2> ready{};
    EXPECT_EQ(pipe(ready.data()), 0);
    mProcess = fork();
    if (mProcess == 0) {
      std::string holder;
      const auto lock = platform::makePosixDeviceLocks()->lock(address, DeviceUse::Update, holder);
      if (write(ready[1], lock ? "y" : "n", 1) == 1) pause();  // until it is killed
      _exit(1);
    }
    char answer = 0;
    EXPECT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    close(ready[0]);
    close(ready[1]);
  }
  ~Holding() { end(SIGKILL); }
  Holding(const Holding&) = delete;
  Holding& operator=(const Holding&) = delete;

  void end(int signal) {
    if (mProcess > 0 && kill(mProcess, signal) == 0) waitpid(mProcess, nullptr, 0);
    mProcess = -1;
  }
  pid_t process() const { return mProcess; }

 private:
  pid_t mProcess = -1;
};

// Who could not lock anything must not be told of another program.
TEST_F(PosixDeviceLocks, WithoutDescriptorsNobodyIsKeptOut) {
  const auto locks = platform::makePosixDeviceLocks();
  for (const DeviceUse use : {DeviceUse::Question, DeviceUse::Update}) {
    const NoDescriptors none;
    mHolder = "nobody asked";
    EXPECT_EQ(locks->lock(mAddress, use, mHolder), nullptr);
    EXPECT_EQ(mHolder, "");
  }
}

TEST_F(PosixDeviceLocks, OtherProcessIsNamedUntilItIsKilled) {
  Holding other(mAddress);
  EXPECT_TRUE(isLocked());
  EXPECT_EQ(mHolder, "test_contract_posix (process " + std::to_string(other.process()) + ")");
  other.end(SIGKILL);
  EXPECT_FALSE(isLocked());
}

TEST_F(PosixDeviceLocks, StoppedProcessIsNamedWithoutWaiting) {
  Holding other(mAddress);
  ASSERT_EQ(kill(other.process(), SIGSTOP), 0);
  EXPECT_TRUE(isLocked());
  EXPECT_EQ(mHolder, "test_contract_posix (process " + std::to_string(other.process()) + ")");
}

TEST_F(PosixDeviceLocks, WhoeverTakesTheNameIsNamed) {
  const int socket = squat();
  EXPECT_TRUE(isLocked());
  EXPECT_EQ(mHolder, "another program");
  ASSERT_EQ(listen(socket, 0), 0);
  EXPECT_TRUE(isLocked());
  EXPECT_EQ(mHolder, "test_contract_posix (process " + std::to_string(getpid()) + ")");
  // The queue of who asks is full by now, and nobody is waited for.
  EXPECT_TRUE(isLocked());
  EXPECT_TRUE(isLocked());
  EXPECT_EQ(mHolder, "another program");
  close(socket);
  EXPECT_FALSE(isLocked());
}

}  // namespace
