// Locks without other programs: a test says who is at a printer. Two locks of one address exclude
// each other, as those of two programs do.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/DeviceLocks.h"

class FakeDeviceLocks final : public platform::DeviceLocks {
 public:
  explicit FakeDeviceLocks(std::string program = "tester (process 1)")
      : mProgram(std::move(program)) {}

  // Somebody else has each lock from now on.
  void setHolder(std::string holder) { mHolder = std::move(holder); }

  std::size_t held() const { return mHeld.size(); }

  std::unique_ptr<platform::DeviceLock> lock(const platform::Data& address,
                                             std::string& holder) override {
    holder.clear();
    if (address == nullptr || address->size() < 16 || (*address)[1] != 2) return nullptr;
    std::vector<std::uint8_t> place(address->begin() + 2, address->begin() + 8);
    if (!mHolder.empty() || mHeld.contains(place)) {
      holder = mHolder.empty() ? mProgram : mHolder;
      return nullptr;
    }
    return std::make_unique<Lock>(mHeld, std::move(place));
  }

 private:
  using Places = std::set<std::vector<std::uint8_t>>;

  class Lock final : public platform::DeviceLock {
   public:
    Lock(Places& held, std::vector<std::uint8_t> place) : mHeld(held), mPlace(std::move(place)) {
      mHeld.insert(mPlace);
    }
    ~Lock() override { mHeld.erase(mPlace); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    Places& mHeld;
    std::vector<std::uint8_t> mPlace;
  };

  std::string mProgram;
  std::string mHolder;
  Places mHeld;
};
