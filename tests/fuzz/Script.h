// The bytes of an input, taken from the front; nothing but zeros behind its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class Script {
 public:
  Script(const std::uint8_t* data, std::size_t size) : mData(data), mSize(size) {}

  bool isOver() const { return mNext == mSize; }
  std::uint8_t take() { return isOver() ? std::uint8_t{0} : mData[mNext++]; }
  std::string take(std::size_t count) {
    std::string bytes;
    while (bytes.size() < count) bytes += static_cast<char>(take());
    return bytes;
  }

  // One of the choices of an array.
  template <typename Choices>
  const auto& choose(const Choices& choices) {
    return choices[take() % std::size(choices)];
  }

 private:
  const std::uint8_t* mData;
  std::size_t mSize;
  std::size_t mNext = 0;
};
