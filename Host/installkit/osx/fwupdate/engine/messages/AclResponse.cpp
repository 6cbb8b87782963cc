#include "AclResponse.h"

#include <bit>
#include <iomanip>

#include "Log.h"
#include "PjlAclRequestHeader.h"

namespace {

constexpr std::uint16_t kStatusSuccess = 1;

}  // namespace

bool AclResponse::responseIsValid(unsigned short command) const {
  logResponse();
  return answers(command);
}

unsigned short AclResponse::getIeee1284ResponseLen() const {
  logResponse();
  if (!answers(kAclCommandIeee1284DeviceId)) return 0;
  return mDataLength;
}

void AclResponse::logResponse() const {
  Log<7>() << "ACL Response: prefix=" << std::hex << std::setfill('0') << std::setw(4) << +mPrefix
           << "; cmd ID=" << std::setw(4) << +mCommand << "; cmdStatus=" << +mCmdStatus
           << std::flush;

  Log<7>() << "ACL Response raw: ";
  for (const std::uint8_t byte : std::bit_cast<std::array<std::uint8_t, 16>>(*this)) {
    Log<7>() << std::setw(2) << +byte << ' ';
  }
  Log<7>() << std::dec << std::flush;
}

bool AclResponse::answers(unsigned short command) const {
  return mPrefix == kAclPrefix && mCommand == command && mCmdStatus == kStatusSuccess;
}
