// The beginning of every request to a printer's ACL interpreter. It carries the PJL preamble that
// enters ACL, so that a request can be sent to a printer in any state. The object's bytes are the
// message; tasks write them as they are.
#pragma once

#include <array>
#include <cstdint>

#include "BigEndian.h"
#include "Pjl.h"

inline constexpr std::uint16_t kAclPrefix = 0x00AC;

inline constexpr std::uint16_t kAclCommandIeee1284DeviceId = 6;
inline constexpr std::uint16_t kAclCommandFirmwareBurn = 15;

struct FirmwareBurnParameters {
  BigEndian<std::uint16_t> mKind{0x0400};
  BigEndian<std::uint16_t> mCheckSum;
  BigEndian<std::uint32_t> mReserved;
  BigEndian<std::uint32_t> mLength;  // of the firmware image, in bytes
};

class PjlAclRequestHeader {
 public:
  // Without command and parameters.
  PjlAclRequestHeader() = default;

  void setCommand(unsigned short command) { mCommand = command; }
  void setParameters(const FirmwareBurnParameters& parameters);

  // Back to no command and no parameters.
  void clear();

 private:
  // What is unused here is for the printer.
  [[maybe_unused]] std::array<char, 9> mUel = kUel;
  [[maybe_unused]] std::array<char, 25> mEnterAcl = kEnterAcl;
  BigEndian<std::uint16_t> mPrefix{kAclPrefix};
  BigEndian<std::uint16_t> mCommand;
  std::array<std::uint8_t, 12> mParameters = {};
};

static_assert(sizeof(PjlAclRequestHeader) == 50);
