#include "PjlAclRequestHeader.h"

#include <bit>

void PjlAclRequestHeader::setParameters(const FirmwareBurnParameters& parameters) {
  mParameters = std::bit_cast<std::array<std::uint8_t, 12>>(parameters);
}

void PjlAclRequestHeader::clear() {
  mCommand = 0;
  mParameters.fill(0);
}
