// Any sixteen bytes are a response: valid exactly when prefix, command and status say so.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "AclResponse.h"
#include "LogRecorder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::uint8_t bytes[16] = {};
  std::copy_n(data, std::min(size, sizeof bytes), bytes);
  AclResponse response;
  std::memcpy(static_cast<void*>(&response), bytes, sizeof bytes);

  const LogRecorder recorder;
  const auto answers = [&bytes](std::uint8_t command) {
    const std::uint8_t beginning[] = {0x00, 0xAC, 0x00, command, 0x00, 0x01};
    return std::equal(std::begin(beginning), std::end(beginning), bytes);
  };
  const unsigned length = answers(6) ? bytes[6] * 256u + bytes[7] : 0;
  const bool isRight = response.responseIsValid(6) == answers(6) &&
                       response.responseIsValid(15) == answers(15) &&
                       response.getIeee1284ResponseLen() == length;
  const bool isLogged = recorder.entries().size() == 6 &&
                        recorder.entries().back().text.size() == sizeof "ACL Response raw: " + 47;
  if (!isRight || !isLogged) std::abort();
  return 0;
}
