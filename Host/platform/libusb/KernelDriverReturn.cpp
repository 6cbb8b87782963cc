#include "platform/libusb/KernelDriverReturn.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/libusb/GiveBackAtExit.h"

namespace platform {
namespace {

// What the thread has. Its end closes a pipe, and so can be watched. Without a descriptor of its
// own it has the caller's.
class Call {
 public:
  Call(int node, std::uint8_t interface, int end)
      : mCopy(fcntl(node, F_DUPFD_CLOEXEC, 0)),
        mNode(mCopy >= 0 ? mCopy : node),
        mInterface(interface),
        mEnd(end) {
    giveBackAtExit(mNode, mInterface);
  }
  ~Call() {
    dropFromExit(mNode, mInterface);
    if (mCopy >= 0) close(mCopy);
    if (mEnd >= 0) close(mEnd);
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  bool canBeWatched() const { return mCopy >= 0 && mEnd >= 0; }
  void make() const { connectKernelDriver(mNode, mInterface); }

 private:
  int mCopy;
  int mNode;
  std::uint8_t mInterface;
  int mEnd;
};

bool startThread(const std::shared_ptr<Call>& call) {
  try {
    std::thread([call] { call->make(); }).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace

KernelDriverReturn::KernelDriverReturn(RunLoop& runLoop, int node, std::uint8_t interface,
                                       std::function<void()> ended) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) == 0) {
    mEnd = ends[0];
    mWatch = runLoop.watch(mEnd, RunLoop::Interest::Readable, std::move(ended));
  } else {
    mTold = runLoop.startTimer(std::chrono::milliseconds(0), false, std::move(ended));
  }
  const auto call = std::make_shared<Call>(node, interface, ends[1]);
  // No descriptors or no threads to be had: somebody waits.
  if (!call->canBeWatched() || !startThread(call)) call->make();
}

KernelDriverReturn::~KernelDriverReturn() {
  mWatch.reset();
  if (mEnd >= 0) close(mEnd);
}

}  // namespace platform
