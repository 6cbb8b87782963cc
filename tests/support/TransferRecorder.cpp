#include "TransferRecorder.h"

#include <cstdint>
#include <ios>
#include <ostream>

void PrintTo(const TransferEnd& end, std::ostream* stream) {
  *stream << "0x" << std::hex << static_cast<std::uint32_t>(end.result) << std::dec << " with "
          << end.bytes << " bytes";
}

void TransferRecorder::ended(void* refCon, platform::IOReturn result, void* arg0) {
  static_cast<TransferRecorder*>(refCon)->mEnds.push_back(
      {result, reinterpret_cast<std::uintptr_t>(arg0)});
}
