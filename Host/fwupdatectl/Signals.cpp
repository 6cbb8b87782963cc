#include "Signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace {

sigset_t notIgnored(std::initializer_list<int> numbers) {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : numbers) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler != SIG_IGN) sigaddset(&set, number);
  }
  return set;
}

}  // namespace

Signals::Signals(platform::RunLoop& runLoop, std::function<void()> arrived)
    : Signals(runLoop, {SIGINT, SIGTERM, SIGHUP},
              [arrived = std::move(arrived)](int) { arrived(); }) {}

Signals::Signals(platform::RunLoop& runLoop, std::initializer_list<int> numbers,
                 std::function<void(int)> arrived)
    : mArrived(std::move(arrived)) {
  const sigset_t set = notIgnored(numbers);
  mDescriptor = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
  if (mDescriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "Unable to watch for signals");
  }
  sigprocmask(SIG_BLOCK, &set, &mPrevious);
  mWatch = runLoop.watch(mDescriptor, platform::RunLoop::Interest::Readable, [this] { take(); });
}

Signals::~Signals() {
  mWatch.reset();
  close(mDescriptor);
  sigprocmask(SIG_SETMASK, &mPrevious, nullptr);
}

void Signals::take() {
  signalfd_siginfo taken{};
  while (read(mDescriptor, &taken, sizeof taken) == sizeof taken) {
    mArrived(static_cast<int>(taken.ssi_signo));
  }
}
