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

  // Somebody else updates each printer from now on, or asks it something; nobody for an empty text.
  void setUpdating(std::string holder) { mUpdating = std::move(holder); }
  void setAsking(std::string holder) { mAsking = std::move(holder); }

  std::size_t granted() const { return mTalks.size(); }

  std::unique_ptr<platform::DeviceLock> lock(const platform::Data& address, platform::DeviceUse use,
                                             std::string& holder) override {
    holder.clear();
    if (address == nullptr || address->size() < 16 || (*address)[1] != 2) return nullptr;
    const Place place(address->begin() + 2, address->begin() + 8);
    if (!mUpdating.empty() || mUpdates.contains(place)) {
      holder = mUpdating.empty() ? mProgram : mUpdating;
      return nullptr;
    }
    return std::make_unique<Lock>(*this, place, use);
  }

 private:
  using Place = std::vector<std::uint8_t>;

  class Lock final : public platform::DeviceLock {
   public:
    Lock(FakeDeviceLocks& locks, const Place& place, platform::DeviceUse use)
        : mLocks(locks), mPlace(place), mIsUpdate(use == platform::DeviceUse::Update) {
      if (mIsUpdate) mLocks.mUpdates.insert(mPlace);
    }
    ~Lock() override {
      if (mIsGranted) mLocks.mTalks.erase(mPlace);
      if (mIsUpdate) mLocks.mUpdates.erase(mPlace);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    bool isGranted(std::string& holder) override {
      holder.clear();
      if (!mIsGranted && !mLocks.mAsking.empty()) {
        holder = mLocks.mAsking;
      } else if (!mIsGranted) {
        mIsGranted = mLocks.mTalks.insert(mPlace).second;
        if (!mIsGranted) holder = mLocks.mProgram;
      }
      return mIsGranted;
    }

   private:
    FakeDeviceLocks& mLocks;
    Place mPlace;
    bool mIsUpdate;
    bool mIsGranted = false;
  };

  std::string mProgram;
  std::string mUpdating;
  std::string mAsking;
  std::set<Place> mUpdates;
  std::set<Place> mTalks;
};
