// Result codes of the platform's operations: 0 is success; the host's errno values are positive;
// the negative codes below are the program's own.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus errAEEventNotHandled = -1708;
inline constexpr OSStatus errDataBrowserItemNotFound = -4971;
inline constexpr OSStatus errDataBrowserPropertyNotFound = -4972;
inline constexpr OSStatus errDataBrowserItemNotAdded = -4975;
inline constexpr OSStatus errDataBrowserPropertyNotSupported = -4979;
inline constexpr OSStatus errInvalidWindowRef = -5600;
inline constexpr OSStatus controlPropertyNotFoundErr = -5604;
inline constexpr OSStatus eventParameterNotFoundErr = -9870;
inline constexpr OSStatus eventNotHandledErr = -9874;
inline constexpr OSStatus kIBCarbonRuntimeCantFindNibFile = -10960;
inline constexpr OSStatus kIBCarbonRuntimeObjectNotOfRequestedType = -10961;
inline constexpr OSStatus kIBCarbonRuntimeCantFindObject = -10962;
inline constexpr OSStatus errControlNotFound = -30584;

// Names and describes result codes for the log. Both texts are empty for an unknown code.
class StatusTable {
 public:
  virtual ~StatusTable() = default;
  virtual std::string name(OSStatus status) const = 0;
  virtual std::string description(OSStatus status) const = 0;
};

}  // namespace platform
