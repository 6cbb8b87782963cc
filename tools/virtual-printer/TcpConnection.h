// One accepted TCP connection and the conversation over it. Made and destroyed by the TcpServer,
// which is told, from the event loop, when the connection can go.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Connection.h"
#include "Conversation.h"
#include "EventLoop.h"
#include "FileDescriptor.h"

namespace virtualprinter {

class TcpConnection : private Connection {
 public:
  TcpConnection(FileDescriptor socket, const std::string& peer, Printer& printer, EventLoop& loop,
                std::function<void()> finished);
  ~TcpConnection() override;

  // The printer leaves: nothing is flushed.
  void abandon();

 private:
  void send(std::span<const std::uint8_t> bytes) override;
  void stopReading() override;
  void close() override;
  void reset() override;
  void perform(const Fault& fault) override;

  void ready(short events);
  void readAvailable();
  bool readOnce();
  void paused();
  void flush();
  void updateEvents();
  void dropArrivedBytes();
  void finishWhenSent();

  FileDescriptor mSocket;
  EventLoop& mLoop;
  std::function<void()> mFinished;
  Conversation mConversation;
  std::optional<Pace> mPace;
  std::unique_ptr<EventLoop::Watch> mWatch;
  std::unique_ptr<Scheduler::Timer> mPaceTimer;
  std::unique_ptr<Scheduler::Timer> mFinishTimer;
  std::vector<std::uint8_t> mUnsent;
  bool mReading = true;
  bool mClosing = false;
};

}  // namespace virtualprinter
