// A printer's answer to an ACL request. Tasks read it from the transport into the object's bytes,
// whatever these are, and then ask it. Asking writes the response to the debug log.
#pragma once

#include <array>
#include <cstdint>
#include <type_traits>

#include "BigEndian.h"

class AclResponse {
 public:
  // True when the printer has accomplished `command`.
  bool responseIsValid(unsigned short command) const;

  // The number of device-ID bytes that follow the response; 0 when it is no valid answer to the
  // device-ID request.
  unsigned short getIeee1284ResponseLen() const;

  // The fields, then the raw bytes. Leaves '0' as the debug log's fill character.
  void logResponse() const;

 private:
  bool answers(unsigned short command) const;

  BigEndian<std::uint16_t> mPrefix;
  BigEndian<std::uint16_t> mCommand;
  BigEndian<std::uint16_t> mCmdStatus;
  BigEndian<std::uint16_t> mDataLength;
  [[maybe_unused]] std::array<std::uint8_t, 8> mRest = {};  // read by none but the log, as bytes
};

static_assert(sizeof(AclResponse) == 16 && std::is_trivially_copyable_v<AclResponse>);
