// Stream sockets without a network. A test plays the host: it says when a connection is made, when
// bytes arrive and when they can be written. Every call is recorded as a line of text, in order:
// "create 15", "connect", "enable 11", "send 34 within 5", "close".
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "platform/Network.h"

class FakeNetwork : public platform::Network {
 public:
  // What the next calls answer; 0 at first.
  void setConnectResult(int result) { mConnectResult = result; }
  void setSendResult(int result) { mSendResult = result; }

  // The most that a send hands over at once; all at first. One that fails hands over nothing.
  void takeAtOnce(std::size_t bytes) { mTakenAtOnce = bytes; }

  const std::vector<std::string>& calls() const { return mCalls; }
  std::vector<std::string> takeCalls();

  // The address of the last connect, and the bytes of each send that succeeded.
  const platform::Data& connectedTo() const { return mConnectedTo; }
  const std::vector<std::vector<std::uint8_t>>& sent() const { return mSent; }

  // Where the bytes of the last send lay.
  const void* lastSendBuffer() const { return mLastSendBuffer; }

  // The events of the one open socket. A type that is not enabled is not called back: false.
  // Write-ready is called back once per enabling.
  bool connectionEnds(const int* error = nullptr);
  bool becomesWritable();
  bool arrives(std::vector<std::uint8_t> bytes);

  // Any call, enabled or not.
  void callBack(unsigned long type, const void* data);
  void callBackWithoutInfo(unsigned long type);

  bool isOpen() const { return mOpen != nullptr; }

  // Whether the last socket was told to connect, to connectedTo().
  bool isConnecting() const { return mIsConnecting; }

  std::unique_ptr<platform::StreamSocket> createStreamSocket(
      unsigned long callbackTypes, platform::StreamSocket::Callout callout, void* info) override;
  platform::Text numericAddress(int family, std::span<const std::uint8_t> address) override;

 private:
  class Socket;

  bool callBackIfEnabled(unsigned long bit, unsigned long type, const void* data);

  Socket* mOpen = nullptr;
  bool mIsConnecting = false;
  int mConnectResult = 0;
  int mSendResult = 0;
  std::size_t mTakenAtOnce = std::numeric_limits<std::size_t>::max();
  platform::Data mConnectedTo;
  std::vector<std::vector<std::uint8_t>> mSent;
  const void* mLastSendBuffer = nullptr;
  std::vector<std::string> mCalls;
};
