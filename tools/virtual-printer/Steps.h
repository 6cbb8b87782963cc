// The points of a conversation at which a fault can strike, in the order in which they are reached.
// Used by the fault plan (`close@mid-image`) and by the conversation, which announces each one.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace virtualprinter {

enum class Step {
  Connect,         // the connection stands, nothing has been received
  MidStatusOff,    // half of the status-off message is in
  StatusOff,       // the status-off message is in
  MidIdRequest,    // half of the device-ID request is in
  IdRequest,       // the device-ID request is in, nothing has been answered
  MidIdResponse,   // half of the 16-byte response is out
  IdResponse,      // the 16-byte response is out, the device ID is not
  MidDeviceId,     // half of the device ID is out
  DeviceId,        // the device ID is out
  MidBurnHeader,   // half of the burn header is in
  BurnHeader,      // the burn header is in
  FirstImageByte,  // the first byte of the image is in
  MidImage,        // half of the image is in
  LastImageByte,   // all of the image is in but its last byte
  Image,           // the image is in
  MidUel,          // half of the closing UEL is in
  Uel,             // the closing UEL is in, burning has not begun
  Burned,          // burning has ended, nothing has been answered
  MidBurnReply,    // half of the 16-byte burn reply is out
  BurnReply,       // the burn reply is out
};

std::string_view stepName(Step step);
std::optional<Step> stepNamed(std::string_view name);
std::string_view stepMeaning(Step step);
const std::vector<Step>& allSteps();

}  // namespace virtualprinter
