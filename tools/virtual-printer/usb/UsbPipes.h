// The two bulk pipes of one interface, as a stream in each direction. What is sent in one call is
// one transfer of its own. Owned by whoever talks over them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "AsyncIo.h"
#include "FileDescriptor.h"

namespace virtualprinter {

class UsbPipes {
 public:
  struct Handlers {
    // How many bytes to read at most, behind those that are asked for already: nothing is told
    // before they, or a short packet, have arrived.
    std::function<std::size_t(std::size_t asked)> wanted;
    std::function<void(std::span<const std::uint8_t> bytes)> received;
    std::function<void()> allSent;
  };

  UsbPipes(AsyncIo& io, FileDescriptor out, FileDescriptor in, Handlers handlers);

  // The host has configured the interface: begins to read. What was under way before is forgotten.
  void start();

  // Forgets what is under way; the host has gone.
  void stop();

  void send(std::span<const std::uint8_t> bytes);  // no bytes are an empty packet
  void stopReading();
  bool isIdle() const { return mUnsent.empty(); }

  // Halts both pipes until the host clears them.
  void stall();

 private:
  struct Read {
    AsyncIo::Number number;
    std::size_t size;
  };

  void askForMore();
  void write();

  AsyncIo& mIo;
  FileDescriptor mOut;
  FileDescriptor mIn;
  Handlers mHandlers;
  std::deque<std::vector<std::uint8_t>> mUnsent;
  std::deque<Read> mReads;  // in flight, in order
  bool mReading = false;
  // What was submitted since the last start(); completions of before hold an older one.
  std::shared_ptr<int> mEpoch;
};

}  // namespace virtualprinter
