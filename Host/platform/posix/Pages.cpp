#include "platform/posix/Pages.h"

#include <sys/mman.h>

#include <cstdint>
#include <memory>
#include <new>

namespace platform {
namespace {

// Of most machines. Where memory and file begin at a multiple of it, one entry of the page table
// takes the place of 512.
constexpr std::size_t kLargePage = std::size_t{2} << 20;

void* reserve(std::size_t size) {
  void* const reserved =
      ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (reserved == MAP_FAILED) throw std::bad_alloc();
  return reserved;
}

}  // namespace

Pages::Pages(std::size_t size) : mSize(size) {
  if (size == 0) return;
  if (size > SIZE_MAX - kLargePage) throw std::bad_alloc();
  mReservedSize = size + kLargePage;
  mReserved = reserve(mReservedSize);
  void* begin = mReserved;
  std::size_t room = mReservedSize;
  mBegin = static_cast<char*>(std::align(kLargePage, size, begin, room));
  // With small pages, most of the time that a large image takes to load goes into page faults. A
  // kernel without large ones refuses, and small ones do as well.
  static_cast<void>(::madvise(mBegin, size, MADV_HUGEPAGE));
}

Pages::~Pages() {
  if (mReserved != nullptr) ::munmap(mReserved, mReservedSize);
}

void Pages::showForWriting(int descriptor) { show(descriptor, PROT_READ | PROT_WRITE); }

void Pages::showForReading(int descriptor) {
  show(descriptor, PROT_READ);
  // All at once: one call instead of a fault for each few pages, which do as well.
  if (mSize != 0) static_cast<void>(::madvise(mBegin, mSize, MADV_POPULATE_READ));
}

void Pages::show(int descriptor, int protection) {
  if (mSize == 0) return;
  if (::mmap(mBegin, mSize, protection, MAP_SHARED | MAP_FIXED, descriptor, 0) == MAP_FAILED) {
    throw std::bad_alloc();
  }
  static_cast<void>(::madvise(mBegin, mSize, MADV_HUGEPAGE));
}

}  // namespace platform
