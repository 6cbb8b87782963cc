#include "FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t sFailingSize = 0;

}  // namespace

void failNextAllocationOf(std::size_t size) { sFailingSize = size; }

void* operator new(std::size_t size) {
  if (size != 0 && size == sFailingSize) {
    sFailingSize = 0;
    throw std::bad_alloc();
  }
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
