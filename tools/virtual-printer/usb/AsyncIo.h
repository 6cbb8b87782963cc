// Reads and writes on the endpoints of a gadget, which know neither poll(2) nor any other way of
// waiting: Linux's own asynchronous input and output (io_submit(2)), with its completions brought
// to the event loop. Owned by the gadget; outlives its pipes.
#pragma once

#include <linux/aio_abi.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "EventLoop.h"
#include "FileDescriptor.h"

namespace virtualprinter {

class AsyncIo {
 public:
  // `result` is the number of bytes, or a negative errno; `bytes` what was read.
  using Done = std::function<void(long result, std::span<const std::uint8_t> bytes)>;

  // Throws std::runtime_error where the kernel lacks it.
  explicit AsyncIo(EventLoop& loop);

  // Everything in flight is cancelled. Nothing is called afterwards.
  ~AsyncIo();
  AsyncIo(const AsyncIo&) = delete;
  AsyncIo& operator=(const AsyncIo&) = delete;

  using Number = std::uint64_t;

  // `done` is called once, never from inside these calls.
  Number read(int descriptor, std::size_t size, Done done);
  Number write(int descriptor, std::vector<std::uint8_t> bytes, Done done);

  // The operation ends soon, with whatever it has, or an error.
  void cancel(Number number);

 private:
  struct Operation {
    iocb control{};
    std::vector<std::uint8_t> buffer;
    Done done;
  };

  Number submit(int descriptor, std::uint16_t opcode, std::unique_ptr<Operation> operation);
  void collect();

  EventLoop& mLoop;
  aio_context_t mContext = 0;
  FileDescriptor mReady;  // an eventfd
  std::unique_ptr<EventLoop::Watch> mWatch;
  std::map<Number, std::unique_ptr<Operation>> mOperations;
  Number mLastNumber = 0;
  std::vector<std::unique_ptr<Scheduler::Timer>> mRefused;
};

}  // namespace virtualprinter
