// One TCP connection of the program to a printer, on a non-blocking socket that the run loop
// watches. Made by the network of this folder; owned by the transport.
//
// The connection goes through four states: made, connecting, connected, dead. It is dead when the
// connection failed or a send was given up; nothing is called back then. What the host says to a
// failure goes to the log's history.
#pragma once

#include <chrono>
#include <memory>

#include "platform/Network.h"
#include "platform/RunLoop.h"
#include "platform/posix/FileDescriptor.h"

namespace platform {

class PosixStreamSocket : public StreamSocket {
 public:
  // `socket` may be none: `error` is then what connecting and sending answer.
  PosixStreamSocket(RunLoop& runLoop, FileDescriptor socket, int error, unsigned long callbackTypes,
                    Callout callout, void* info);
  ~PosixStreamSocket() override;

  int connectInBackground(const Data& address) override;
  void enableCallbacks(unsigned long types) override;
  int send(std::span<const std::uint8_t> bytes, double timeoutSeconds,
           const Progress& progress) override;

 private:
  enum class State { Made, Connecting, Connected, Dead };
  using Clock = std::chrono::steady_clock;

  int startToConnect(const Data& address);
  int sendAll(std::span<const std::uint8_t> bytes, double timeoutSeconds, const Progress& progress);
  void writable();
  void connectEnded();
  void readable();
  void call(CallbackType type, const void* data);
  bool isEnabled(CallbackType type) const { return (mEnabledTypes & type) == type; }
  void abandon();

  RunLoop& mRunLoop;
  FileDescriptor mSocket;
  const int mSocketError;
  unsigned long mEnabledTypes;
  const Callout mCallout;
  void* const mInfo;
  State mState = State::Made;
  Data mAddress;
  bool mEnded = false;                        // the printer has closed its end
  std::unique_ptr<RunLoop::Watch> mReadable;  // while connected
  std::unique_ptr<RunLoop::Watch> mWritable;  // while connecting or connected
};

}  // namespace platform
