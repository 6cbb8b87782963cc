#include "WatchedMemory.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

bool sFailing = false;
bool sMayFail = true;
std::size_t sSuccessesBeforeFailure = 0;

const void* sWatchedBlock = nullptr;
bool sWatchedBlockIsFreed = false;

std::atomic<std::size_t> sHeldBytes = 0;

bool isToFail() {
  if (!sFailing || !sMayFail || sSuccessesBeforeFailure-- > 0) return false;
  sFailing = false;
  return true;
}

}  // namespace

FailingAllocation::FailingAllocation(std::size_t successes) {
  sSuccessesBeforeFailure = successes;
  sFailing = true;
}

FailingAllocation::~FailingAllocation() { sFailing = false; }

bool FailingAllocation::hasFailed() const { return !sFailing; }

std::size_t heldBytes() { return sHeldBytes; }

AllocationsMayFail::AllocationsMayFail(bool may) : mBefore(std::exchange(sMayFail, may)) {}

AllocationsMayFail::~AllocationsMayFail() { sMayFail = mBefore; }

WatchedBlock::WatchedBlock(const void* block) {
  sWatchedBlock = block;
  sWatchedBlockIsFreed = false;
}

WatchedBlock::~WatchedBlock() { sWatchedBlock = nullptr; }

bool WatchedBlock::isFreed() const { return sWatchedBlockIsFreed; }

void* operator new(std::size_t size) {
  if (isToFail()) throw std::bad_alloc();
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  sHeldBytes += malloc_usable_size(memory);
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr && memory == sWatchedBlock) sWatchedBlockIsFreed = true;
  sHeldBytes -= malloc_usable_size(memory);
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
