#include "RawDataCollector.h"

#include <algorithm>
#include <stdexcept>

void RawDataCollector::pushBackData(const unsigned char* data, std::size_t length) {
  mData.insert(mData.end(), data, data + length);
}

void RawDataCollector::popData(unsigned char* begin, unsigned char* end) {
  if (static_cast<std::size_t>(end - begin) > mData.size()) {
    throw std::runtime_error("Not enough data to pop");
  }
  const auto behindLast = mData.begin() + (end - begin);
  std::copy(mData.begin(), behindLast, begin);
  mData.erase(mData.begin(), behindLast);
}
