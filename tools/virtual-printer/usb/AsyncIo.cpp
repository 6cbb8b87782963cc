#include "AsyncIo.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "fail.h"

namespace virtualprinter {
namespace {

constexpr unsigned kMaxInFlight = 64;

}  // namespace

AsyncIo::AsyncIo(EventLoop& loop) : mLoop(loop), mReady(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!mReady || syscall(SYS_io_setup, kMaxInFlight, &mContext) != 0) {
    fail("asynchronous input and output");
  }
  mWatch = mLoop.watch(mReady.get(), POLLIN, [this](short) { collect(); });
}

AsyncIo::~AsyncIo() {
  // Waits until the kernel no longer uses the buffers.
  syscall(SYS_io_destroy, mContext);
}

AsyncIo::Number AsyncIo::read(int descriptor, std::size_t size, Done done) {
  auto operation = std::make_unique<Operation>();
  operation->buffer.resize(size);
  operation->done = std::move(done);
  return submit(descriptor, IOCB_CMD_PREAD, std::move(operation));
}

AsyncIo::Number AsyncIo::write(int descriptor, std::vector<std::uint8_t> bytes, Done done) {
  auto operation = std::make_unique<Operation>();
  operation->buffer = std::move(bytes);
  operation->done = std::move(done);
  return submit(descriptor, IOCB_CMD_PWRITE, std::move(operation));
}

AsyncIo::Number AsyncIo::submit(int descriptor, std::uint16_t opcode,
                                std::unique_ptr<Operation> operation) {
  const Number number = ++mLastNumber;
  iocb& control = operation->control;
  control.aio_data = number;
  control.aio_lio_opcode = opcode;
  control.aio_fildes = static_cast<std::uint32_t>(descriptor);
  control.aio_buf = reinterpret_cast<std::uintptr_t>(operation->buffer.data());
  control.aio_nbytes = operation->buffer.size();
  control.aio_flags = IOCB_FLAG_RESFD;
  control.aio_resfd = static_cast<std::uint32_t>(mReady.get());
  iocb* controls[] = {&control};
  mOperations.emplace(number, std::move(operation));
  if (syscall(SYS_io_submit, mContext, 1L, controls) == 1) return number;
  const int error = errno;
  mRefused.push_back(mLoop.after(std::chrono::microseconds(0), [this, number, error] {
    const auto refused = mOperations.extract(number);
    if (!refused.empty()) refused.mapped()->done(-error, {});
  }));
  return number;
}

void AsyncIo::cancel(Number number) {
  const auto found = mOperations.find(number);
  if (found == mOperations.end()) return;
  io_event unused;
  syscall(SYS_io_cancel, mContext, &found->second->control, &unused);
}

void AsyncIo::collect() {
  std::uint64_t count = 0;
  if (::read(mReady.get(), &count, sizeof count) < 0) return;
  std::array<io_event, kMaxInFlight> events;
  timespec atOnce{};
  const long found = syscall(SYS_io_getevents, mContext, 0L, static_cast<long>(events.size()),
                             events.data(), &atOnce);
  for (long i = 0; i < found; ++i) {
    const io_event& event = events[static_cast<std::size_t>(i)];
    const auto ended = mOperations.extract(event.data);
    if (ended.empty()) continue;
    const Operation& operation = *ended.mapped();
    const auto size = event.res > 0 ? static_cast<std::size_t>(event.res) : 0;
    const bool isRead = operation.control.aio_lio_opcode == IOCB_CMD_PREAD;
    operation.done(static_cast<long>(event.res), isRead ? std::span(operation.buffer).first(size)
                                                        : std::span<const std::uint8_t>());
  }
}

}  // namespace virtualprinter
