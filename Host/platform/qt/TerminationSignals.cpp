#include "platform/qt/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>
#include <utility>

namespace platform {
namespace {

volatile std::sig_atomic_t pipeEnd = -1;

// Only what is allowed inside a signal handler: the loop does the rest.
void noteSignal(int) {
  const int savedErrno = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(static_cast<int>(pipeEnd), &byte, 1);
  errno = savedErrno;
}

void drain(int descriptor) {
  std::array<char, 64> bytes;
  while (read(descriptor, bytes.data(), bytes.size()) > 0) {
  }
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> arrived)
    : mArrived(std::move(arrived)) {
  if (pipe2(mPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  pipeEnd = mPipe[1];

  auto* notifier = new QSocketNotifier(mPipe[0], QSocketNotifier::Read, &mContext);
  QObject::connect(notifier, &QSocketNotifier::activated, &mContext, [this] {
    drain(mPipe[0]);
    mArrived();
  });

  struct sigaction noting = {};
  noting.sa_handler = noteSignal;
  noting.sa_flags = SA_RESTART;
  for (Previous& previous : mPrevious) {
    sigaction(previous.number, nullptr, &previous.action);
    if (previous.action.sa_handler != SIG_IGN) sigaction(previous.number, &noting, nullptr);
  }
}

TerminationSignals::~TerminationSignals() {
  if (mPipe[0] < 0) return;
  for (const Previous& previous : mPrevious) sigaction(previous.number, &previous.action, nullptr);
  pipeEnd = -1;
  qDeleteAll(mContext.findChildren<QSocketNotifier*>());
  close(mPipe[0]);
  close(mPipe[1]);
}

}  // namespace platform
