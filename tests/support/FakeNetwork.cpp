#include "FakeNetwork.h"

#include <arpa/inet.h>

#include <algorithm>
#include <sstream>
#include <utility>

using platform::Data;
using platform::StreamSocket;
using platform::Text;

class FakeNetwork::Socket : public StreamSocket {
 public:
  Socket(FakeNetwork& network, unsigned long enabled, Callout callout, void* info)
      : mNetwork(network), mEnabled(enabled), mCallout(callout), mInfo(info) {}

  ~Socket() override {
    mNetwork.mCalls.push_back("close");
    if (mNetwork.mOpen == this) mNetwork.mOpen = nullptr;
  }

  int connectInBackground(const Data& address) override {
    mNetwork.mCalls.push_back("connect");
    mNetwork.mIsConnecting = true;
    mNetwork.mConnectedTo = address;
    return mNetwork.mConnectResult;
  }

  void enableCallbacks(unsigned long types) override {
    mNetwork.mCalls.push_back("enable " + std::to_string(types));
    mEnabled |= types;
  }

  int send(std::span<const std::uint8_t> bytes, double timeoutSeconds,
           const Progress& progress) override {
    std::ostringstream call;
    call << "send " << bytes.size() << " within " << timeoutSeconds;
    mNetwork.mCalls.push_back(call.str());
    mNetwork.mLastSendBuffer = bytes.data();
    if (mNetwork.mSendResult != 0) return mNetwork.mSendResult;
    mNetwork.mSent.emplace_back(bytes.begin(), bytes.end());
    for (std::size_t taken = 0; taken < bytes.size();) {
      taken += std::min(bytes.size() - taken, mNetwork.mTakenAtOnce);
      if (progress) progress(taken);
    }
    return 0;
  }

  // The callout may destroy this socket.
  void callBack(unsigned long type, const void* data, void* info) {
    mCallout(this, type, Data(), data, info);
  }

  FakeNetwork& mNetwork;
  unsigned long mEnabled;
  const Callout mCallout;
  void* const mInfo;
};

std::vector<std::string> FakeNetwork::takeCalls() { return std::exchange(mCalls, {}); }

bool FakeNetwork::callBackIfEnabled(unsigned long bit, unsigned long type, const void* data) {
  if (mOpen == nullptr || (mOpen->mEnabled & bit) == 0) return false;
  mOpen->callBack(type, data, mOpen->mInfo);
  return true;
}

bool FakeNetwork::connectionEnds(const int* error) {
  return callBackIfEnabled(StreamSocket::kConnectCallback, StreamSocket::kConnectCallback, error);
}

bool FakeNetwork::becomesWritable() {
  if (mOpen == nullptr || (mOpen->mEnabled & StreamSocket::kWriteCallback) == 0) return false;
  mOpen->mEnabled &= ~static_cast<unsigned long>(StreamSocket::kWriteCallback);
  mOpen->callBack(StreamSocket::kWriteCallback, nullptr, mOpen->mInfo);
  return true;
}

bool FakeNetwork::arrives(std::vector<std::uint8_t> bytes) {
  const Data data = platform::makeData(std::move(bytes));
  return callBackIfEnabled(StreamSocket::kDataCallback, StreamSocket::kDataCallback, &data);
}

void FakeNetwork::callBack(unsigned long type, const void* data) {
  mOpen->callBack(type, data, mOpen->mInfo);
}

void FakeNetwork::callBackWithoutInfo(unsigned long type) {
  mOpen->callBack(type, nullptr, nullptr);
}

std::unique_ptr<StreamSocket> FakeNetwork::createStreamSocket(unsigned long callbackTypes,
                                                              StreamSocket::Callout callout,
                                                              void* info) {
  mCalls.push_back("create " + std::to_string(callbackTypes));
  auto socket = std::make_unique<Socket>(*this, callbackTypes, callout, info);
  mOpen = socket.get();
  mIsConnecting = false;
  return socket;
}

Text FakeNetwork::numericAddress(int family, std::span<const std::uint8_t> address) {
  char text[INET6_ADDRSTRLEN];
  const bool isIPv4 = family == platform::kAddressFamilyIPv4;
  const bool isIPv6 = family == platform::kAddressFamilyIPv6;
  if (!(isIPv4 && address.size() >= 4) && !(isIPv6 && address.size() >= 16)) return Text();
  return Text::fromUtf8(inet_ntop(isIPv4 ? AF_INET : AF_INET6, address.data(), text, sizeof text));
}
