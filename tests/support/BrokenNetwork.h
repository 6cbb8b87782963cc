// A network on which, when a test wants it, an address cannot be shown, or making a socket throws.
#pragma once

#include <functional>

#include "FakeNetwork.h"

class BrokenNetwork : public FakeNetwork {
 public:
  bool showsAddresses = true;
  std::function<void()> beforeSocket;  // may throw

  platform::Text numericAddress(int family, std::span<const std::uint8_t> address) override {
    return showsAddresses ? FakeNetwork::numericAddress(family, address) : platform::Text();
  }

  std::unique_ptr<platform::StreamSocket> createStreamSocket(
      unsigned long callbackTypes, platform::StreamSocket::Callout callout, void* info) override {
    if (beforeSocket) beforeSocket();
    return FakeNetwork::createStreamSocket(callbackTypes, callout, info);
  }
};
