// Bytes arrive and are taken in any pieces: what comes out is what went in. Each input byte is a
// step: the top bit says whether bytes arrive or are taken, the other bits how many.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "RawDataCollector.h"

namespace {

unsigned char* start(std::string& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  RawDataCollector collector;
  std::string expected;
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t count = data[i] & 0x7F;
    std::string piece(count, static_cast<char>(i));
    if ((data[i] & 0x80) != 0) {
      collector.pushBackData(start(piece), count);
      expected += piece;
    } else if (count > expected.size()) {
      try {
        collector.popData(start(piece), start(piece) + count);
        std::abort();
      } catch (const std::runtime_error&) {
      }
    } else {
      collector.popData(start(piece), start(piece) + count);
      if (piece != expected.substr(0, count)) std::abort();
      expected.erase(0, count);
    }
    if (collector.size() != expected.size()) std::abort();
  }
  return 0;
}
