// What every provider of locks does, here within one process, which the locks do not tell from
// another.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "FakeDeviceLocks.h"
#include "platform/posix/PosixDeviceLocks.h"

namespace {

using platform::Data;
using platform::DeviceLock;
using platform::DeviceLocks;
using platform::DeviceUse;

std::string thisProcess() {
  return "test_contract_posix (process " + std::to_string(getpid()) + ")";
}

struct Provider {
  std::string name;
  std::unique_ptr<DeviceLocks> (*make)();
};

void PrintTo(const Provider& provider, std::ostream* out) { *out << provider.name; }

class DeviceLocksContract : public testing::TestWithParam<Provider> {
 protected:
  // Of this process alone, since tests run at the same time.
  static std::vector<std::uint8_t> record(std::uint8_t family = 2) {
    const auto number = static_cast<std::uint32_t>(getpid());
    std::vector<std::uint8_t> bytes(16);
    bytes[0] = 16;
    bytes[1] = family;
    bytes[2] = 0x23;
    bytes[3] = 0x8C;
    for (std::size_t at = 0; at < 4; ++at)
      bytes[4 + at] = static_cast<std::uint8_t>(number >> (8 * at));
    return bytes;
  }

  std::unique_ptr<DeviceLock> lock(const Data& address, DeviceUse use = DeviceUse::Update) {
    mHolder = "nobody asked";
    return mLocks->lock(address, use, mHolder);
  }

  bool isGranted(const std::unique_ptr<DeviceLock>& lock) {
    mHolder = "nobody asked";
    return lock->isGranted(mHolder);
  }

  // One that has been granted.
  std::unique_ptr<DeviceLock> question() {
    auto asking = lock(mAddress, DeviceUse::Question);
    EXPECT_NE(asking, nullptr);
    EXPECT_EQ(mHolder, "");
    EXPECT_TRUE(isGranted(asking));
    EXPECT_EQ(mHolder, "");
    return asking;
  }

  std::unique_ptr<DeviceLocks> mLocks = GetParam().make();
  std::string mHolder;
  const Data mAddress = platform::makeData(record());
};

INSTANTIATE_TEST_SUITE_P(Of, DeviceLocksContract,
                         testing::Values(Provider{"Posix", &platform::makePosixDeviceLocks},
                                         Provider{"Double",
                                                  []() -> std::unique_ptr<DeviceLocks> {
                                                    return std::make_unique<FakeDeviceLocks>(
                                                        thisProcess());
                                                  }}),
                         [](const auto& provider) { return provider.param.name; });

TEST_P(DeviceLocksContract, LockIsGivenOnceAndItsHolderNamed) {
  const auto first = lock(mAddress);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(mHolder, "");
  for (int times = 0; times < 3; ++times) {
    EXPECT_EQ(lock(mAddress), nullptr);
    EXPECT_EQ(mHolder, thisProcess());
  }
}

TEST_P(DeviceLocksContract, NobodyTalksDuringAnUpdate) {
  const auto update = lock(mAddress);
  EXPECT_TRUE(isGranted(update));
  EXPECT_EQ(lock(mAddress, DeviceUse::Question), nullptr);
  EXPECT_EQ(mHolder, thisProcess());
  EXPECT_EQ(lock(mAddress), nullptr);
  EXPECT_EQ(mHolder, thisProcess());
  EXPECT_TRUE(isGranted(update));
}

TEST_P(DeviceLocksContract, UpdateIsGrantedAtTheEndOfAQuestion) {
  auto asking = question();
  auto update = lock(mAddress);
  ASSERT_NE(update, nullptr);
  EXPECT_EQ(mHolder, "");
  for (int times = 0; times < 3; ++times) {
    EXPECT_FALSE(isGranted(update));
    EXPECT_EQ(mHolder, thisProcess());
  }
  asking.reset();
  EXPECT_TRUE(isGranted(update));
  EXPECT_EQ(mHolder, "");
  EXPECT_EQ(lock(mAddress), nullptr);
  update.reset();
  question();
}

TEST_P(DeviceLocksContract, UpdateThatWaitsLetsNoOtherBegin) {
  auto asking = question();
  const auto update = lock(mAddress);
  EXPECT_EQ(lock(mAddress, DeviceUse::Question), nullptr);
  EXPECT_EQ(mHolder, thisProcess());
  EXPECT_EQ(lock(mAddress), nullptr);
  EXPECT_EQ(mHolder, thisProcess());
  EXPECT_TRUE(isGranted(asking));
  asking.reset();
  EXPECT_TRUE(isGranted(update));
}

TEST_P(DeviceLocksContract, UpdateThatGivesUpLeavesTheQuestionAlone) {
  auto asking = question();
  lock(mAddress).reset();
  const auto other = lock(mAddress, DeviceUse::Question);
  ASSERT_NE(other, nullptr);
  EXPECT_FALSE(isGranted(other));
  EXPECT_EQ(mHolder, thisProcess());
  asking.reset();
  EXPECT_TRUE(isGranted(other));
}

TEST_P(DeviceLocksContract, LockThatIsGivenBackIsFree) {
  auto first = lock(mAddress);
  EXPECT_EQ(lock(mAddress), nullptr);
  first.reset();
  EXPECT_NE(lock(mAddress), nullptr);
  EXPECT_EQ(mHolder, "");
}

TEST_P(DeviceLocksContract, AnotherAddressAndAnotherPortAreOtherPrinters) {
  const auto first = lock(mAddress);
  for (const std::size_t byte : {3u, 7u}) {
    auto other = record();
    other[byte] ^= 0x80;
    EXPECT_NE(lock(platform::makeData(std::move(other))), nullptr) << byte;
    EXPECT_EQ(mHolder, "");
  }
}

TEST_P(DeviceLocksContract, WhatNoConnectionIsMadeToIsNotLocked) {
  const Data cut = platform::makeData({16, 2, 0x23, 0x8C, 192, 0, 2});
  for (const Data& address : {Data(), cut, platform::makeData(record(30))}) {
    EXPECT_EQ(lock(address), nullptr);
    EXPECT_EQ(mHolder, "");
    EXPECT_EQ(lock(address), nullptr);
    EXPECT_EQ(mHolder, "");
  }
}

}  // namespace
