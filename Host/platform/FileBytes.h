// The bytes of a file that was read, in memory that is not changed any more. A copy is another
// holder of the same memory.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace platform {

class FileBytes {
 public:
  FileBytes() = default;

  // `bytes` lie in `memory`.
  FileBytes(std::shared_ptr<const void> memory, std::span<const char> bytes)
      : mMemory(std::move(memory)), mBytes(bytes) {}

  explicit FileBytes(std::vector<char> bytes) {
    const auto memory = std::make_shared<const std::vector<char>>(std::move(bytes));
    *this = FileBytes(memory, *memory);
  }

  const char* data() const { return mBytes.data(); }
  std::size_t size() const { return mBytes.size(); }
  bool empty() const { return mBytes.empty(); }
  auto begin() const { return mBytes.begin(); }
  auto end() const { return mBytes.end(); }

  void clear() { *this = FileBytes(); }

 private:
  std::shared_ptr<const void> mMemory;
  std::span<const char> mBytes;
};

}  // namespace platform
