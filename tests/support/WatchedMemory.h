// Replaces the allocation of the program that it is linked into with one that can be made to fail,
// and that can be asked what has been freed, and how much has not.
#pragma once

#include <cstddef>

// Makes one allocation throw std::bad_alloc: the one after the next `successes`, if it comes before
// this goes. One at a time.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t successes = 0);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  bool hasFailed() const;
};

// The bytes that are allocated now.
std::size_t heldBytes();

// While one lives, allocations may fail and count, or do neither. The innermost one decides; where
// there is none, they may.
class AllocationsMayFail {
 public:
  explicit AllocationsMayFail(bool may);
  ~AllocationsMayFail();
  AllocationsMayFail(const AllocationsMayFail&) = delete;
  AllocationsMayFail& operator=(const AllocationsMayFail&) = delete;

 private:
  bool mBefore;
};

// Notices when the block that begins at that address is freed. One at a time.
class WatchedBlock {
 public:
  explicit WatchedBlock(const void* block);
  ~WatchedBlock();
  WatchedBlock(const WatchedBlock&) = delete;
  WatchedBlock& operator=(const WatchedBlock&) = delete;

  bool isFreed() const;
};
