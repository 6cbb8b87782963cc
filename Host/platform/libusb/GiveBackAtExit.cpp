#include "platform/libusb/GiveBackAtExit.h"

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>

namespace platform {
namespace {

// A node of -1 is a free place; the interface is valid before the node is.
struct Place {
  std::atomic<int> node{-1};
  std::atomic<unsigned> interface { 0 };
};
static_assert(std::atomic<int>::is_always_lock_free);

constexpr std::size_t kPlaces = 1024;
constexpr std::size_t kStackSize = 65536;

std::array<Place, kPlaces> places;
std::atomic<pid_t> owner{0};
alignas(std::max_align_t) std::array<char, kStackSize> signalStack;

// Signals that end a program which does not handle them. The first ones mean a fault of its own.
constexpr std::array kFaults{SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP};
constexpr std::array kOthers{SIGALRM, SIGHUP,  SIGINT,  SIGIO,   SIGPIPE,   SIGPROF, SIGPWR,
                             SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGVTALRM, SIGXCPU, SIGXFSZ};
std::array<struct sigaction, NSIG> previousActions;

// The entries of a process that this one has forked off are not its own.
void giveEverythingBack() {
  if (owner != getpid()) return;
  for (Place& place : places) {
    const int node = place.node.exchange(-1);
    if (node < 0) continue;
    unsigned interface = place.interface;
    ioctl(node, USBDEVFS_RELEASEINTERFACE, &interface);
    connectKernelDriver(node, static_cast<std::uint8_t>(interface));
  }
}

// A fault comes again by itself when the instruction is repeated, with all that a debugger wants to
// know of it; what was sent has to be sent again.
void handleSignal(int number, siginfo_t* info, void*) {
  const int savedErrno = errno;
  giveEverythingBack();
  sigaction(number, &previousActions[static_cast<std::size_t>(number)], nullptr);
  const bool isRepeated = info->si_code > 0 && (number == SIGBUS || number == SIGFPE ||
                                                number == SIGILL || number == SIGSEGV);
  if (!isRepeated) static_cast<void>(raise(number));
  errno = savedErrno;
}

// Whoever handles a signal that is no fault goes on after it, and an ignored one stays ignored.
void handle(int number, bool isFault) {
  struct sigaction& previous = previousActions[static_cast<std::size_t>(number)];
  sigaction(number, nullptr, &previous);
  const bool isDefault = (previous.sa_flags & SA_SIGINFO) == 0 && previous.sa_handler == SIG_DFL;
  const bool isIgnored = (previous.sa_flags & SA_SIGINFO) == 0 && previous.sa_handler == SIG_IGN;
  if (isIgnored || (!isFault && !isDefault)) return;
  struct sigaction action = {};
  action.sa_sigaction = handleSignal;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigaction(number, &action, nullptr);
}

// For a stack that has overflowed there must be another one.
void provideStack() {
  stack_t present = {};
  if (sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0) return;
  stack_t stack = {};
  stack.ss_sp = signalStack.data();
  stack.ss_size = signalStack.size();
  sigaltstack(&stack, nullptr);
}

bool prepare() {
  owner = getpid();
  static_cast<void>(std::atexit(giveEverythingBack));
  provideStack();
  for (const int number : kFaults) handle(number, true);
  for (const int number : kOthers) handle(number, false);
  return true;
}

}  // namespace

void giveBackAtExit(int node, std::uint8_t interface) {
  [[maybe_unused]] static const bool prepared = prepare();
  for (Place& place : places) {
    if (place.node >= 0) continue;
    place.interface = interface;
    place.node = node;
    return;
  }
}

void dropFromExit(int node, std::uint8_t interface) {
  for (Place& place : places) {
    if (place.node == node && place.interface == interface) place.node = -1;
  }
}

void connectKernelDriver(int node, std::uint8_t interface) {
  usbdevfs_ioctl request = {};
  request.ifno = interface;
  request.ioctl_code = USBDEVFS_CONNECT;
  ioctl(node, USBDEVFS_IOCTL, &request);
}

}  // namespace platform
