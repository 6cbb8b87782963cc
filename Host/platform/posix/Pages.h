// Memory that comes in pages straight from the host, in large ones where it has them: zeros, until
// something is written or a file takes their place. What is never touched costs nothing.
#pragma once

#include <cstddef>
#include <span>

namespace platform {

class Pages {
 public:
  // Throws std::bad_alloc when the host does not have so much.
  explicit Pages(std::size_t size);
  ~Pages();
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;

  std::span<char> bytes() const { return {mBegin, mSize}; }

  // The start of the file takes the place of the zeros, as far as they reach: what others write to
  // it shows here. The file must be as long. Throws std::bad_alloc when the host refuses.
  void showForWriting(int descriptor);

  // The same for a file that is not written any more; nor may these bytes be.
  void showForReading(int descriptor);

 private:
  void show(int descriptor, int protection);

  void* mReserved = nullptr;
  std::size_t mReservedSize = 0;
  char* mBegin = nullptr;
  std::size_t mSize;
};

}  // namespace platform
