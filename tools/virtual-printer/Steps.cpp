#include "Steps.h"

namespace virtualprinter {
namespace {

struct StepText {
  Step step;
  std::string_view name;
  std::string_view meaning;
};

constexpr StepText kSteps[] = {
    {Step::Connect, "connect", "the connection stands, nothing has been received"},
    {Step::MidStatusOff, "mid-status-off", "half of the status-off message is in"},
    {Step::StatusOff, "status-off", "the status-off message is in"},
    {Step::MidIdRequest, "mid-id-request", "half of the device-ID request is in"},
    {Step::IdRequest, "id-request", "the device-ID request is in, nothing has been answered"},
    {Step::MidIdResponse, "mid-id-response", "half of the 16-byte response is out"},
    {Step::IdResponse, "id-response", "the response is out, the device ID is not"},
    {Step::MidDeviceId, "mid-device-id", "half of the device ID is out"},
    {Step::DeviceId, "device-id", "the device ID is out"},
    {Step::MidBurnHeader, "mid-burn-header", "half of the burn header is in"},
    {Step::BurnHeader, "burn-header", "the burn header is in"},
    {Step::FirstImageByte, "first-image-byte", "the first byte of the image is in"},
    {Step::MidImage, "mid-image", "half of the image is in"},
    {Step::LastImageByte, "last-image-byte", "all of the image is in but its last byte"},
    {Step::Image, "image", "the image is in"},
    {Step::MidUel, "mid-uel", "half of the closing UEL is in"},
    {Step::Uel, "uel", "the closing UEL is in, burning has not begun"},
    {Step::Burned, "burned", "burning has ended, nothing has been answered"},
    {Step::MidBurnReply, "mid-burn-reply", "half of the 16-byte burn reply is out"},
    {Step::BurnReply, "burn-reply", "the burn reply is out"},
};

const StepText& textOf(Step step) { return kSteps[static_cast<std::size_t>(step)]; }

}  // namespace

std::string_view stepName(Step step) { return textOf(step).name; }

std::string_view stepMeaning(Step step) { return textOf(step).meaning; }

std::optional<Step> stepNamed(std::string_view name) {
  for (const StepText& text : kSteps) {
    if (text.name == name) return text.step;
  }
  return std::nullopt;
}

const std::vector<Step>& allSteps() {
  static const std::vector<Step> steps = [] {
    std::vector<Step> all;
    for (const StepText& text : kSteps) all.push_back(text.step);
    return all;
  }();
  return steps;
}

}  // namespace virtualprinter
