#include "platform/libusb/KernelDriverReturn.h"

#include <fcntl.h>
#include <unistd.h>

#include <system_error>
#include <thread>
#include <utility>

#include "platform/libusb/GiveBackAtExit.h"

namespace platform {
namespace {

// What the thread has. Its end closes a pipe, and so can be watched.
class Call {
 public:
  Call(int node, std::uint8_t interface, int end)
      : mNode(fcntl(node, F_DUPFD_CLOEXEC, 0)), mInterface(interface), mEnd(end) {
    giveBackAtExit(mNode, mInterface);
  }
  ~Call() {
    dropFromExit(mNode, mInterface);
    close(mNode);
    close(mEnd);
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  void make() const { connectKernelDriver(mNode, mInterface); }

 private:
  int mNode;
  std::uint8_t mInterface;
  int mEnd;
};

}  // namespace

KernelDriverReturn::KernelDriverReturn(RunLoop& runLoop, int node, std::uint8_t interface,
                                       std::function<void()> ended) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) == 0) {
    mEnd = ends[0];
    mWatch = runLoop.watch(mEnd, RunLoop::Interest::Readable, std::move(ended));
  }
  const auto call = std::make_shared<Call>(node, interface, ends[1]);
  try {
    std::thread([call] { call->make(); }).detach();
  } catch (const std::system_error&) {
    call->make();  // no threads to be had: somebody waits
  }
}

KernelDriverReturn::~KernelDriverReturn() {
  mWatch.reset();
  if (mEnd >= 0) close(mEnd);
}

}  // namespace platform
