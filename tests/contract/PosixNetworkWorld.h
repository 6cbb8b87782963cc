// The host's network over loopback, on a run loop that whoever derives from it turns.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "NetworkWorld.h"
#include "PosixPrinter.h"
#include "platform/RunLoop.h"
#include "platform/posix/PosixNetwork.h"

class PosixNetworkWorld : public NetworkWorld {
 public:
  // `loop` must outlive it.
  explicit PosixNetworkWorld(platform::RunLoop& loop)
      : mNetwork(platform::makePosixNetwork(loop)) {}

  platform::Network& network() override { return *mNetwork; }

  platform::Data printerAddress(bool listening) override {
    mPrinter.emplace(listening);
    return mPrinter->address();
  }

  void printerSends(const std::vector<std::uint8_t>& bytes) override { connected().sends(bytes); }
  void printerCloses() override { connected().closes(); }
  std::vector<std::uint8_t> printerReceives(std::size_t size) override {
    return connected().receives(size);
  }
  void breakConnection() override {
    connected().resets();
    EXPECT_TRUE(settle());
  }

 private:
  PosixPrinter& connected() {
    if (!mAccepted) mPrinter->accept();
    mAccepted = true;
    return *mPrinter;
  }

  std::unique_ptr<platform::Network> mNetwork;
  std::optional<PosixPrinter> mPrinter;
  bool mAccepted = false;
};
