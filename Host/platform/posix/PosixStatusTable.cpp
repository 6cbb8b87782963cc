#include "platform/posix/PosixStatusTable.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace platform {
namespace {

struct Texts {
  OSStatus status;
  const char* name;
  const char* description;
};

constexpr Texts kOwnCodes[] = {
    {noErr, "noErr", "No error"},
    {errAEEventNotHandled, "errAEEventNotHandled", "No handler took the session's event"},
    {errDataBrowserItemNotFound, "errDataBrowserItemNotFound", "The list has no such row"},
    {errDataBrowserPropertyNotFound, "errDataBrowserPropertyNotFound",
     "The list has no column of this code"},
    {errDataBrowserItemNotAdded, "errDataBrowserItemNotAdded",
     "The row could not be added to the list"},
    {errDataBrowserPropertyNotSupported, "errDataBrowserPropertyNotSupported",
     "The list has no text for this column"},
    {errInvalidWindowRef, "errInvalidWindowRef", "There is no such window"},
    {controlPropertyNotFoundErr, "controlPropertyNotFoundErr", "The control carries no such value"},
    {eventParameterNotFoundErr, "eventParameterNotFoundErr",
     "The event has no such parameter, or it is of another type"},
    {eventNotHandledErr, "eventNotHandledErr", "No handler took the event"},
    {kIBCarbonRuntimeCantFindNibFile, "kIBCarbonRuntimeCantFindNibFile",
     "The interface file could not be found"},
    {kIBCarbonRuntimeObjectNotOfRequestedType, "kIBCarbonRuntimeObjectNotOfRequestedType",
     "The object in the interface file is of another type"},
    {kIBCarbonRuntimeCantFindObject, "kIBCarbonRuntimeCantFindObject",
     "The interface file holds no such object"},
    {errControlNotFound, "errControlNotFound", "The window has no such control"},
};

const Texts* findOwnCode(OSStatus status) {
  const auto found = std::find_if(std::begin(kOwnCodes), std::end(kOwnCodes),
                                  [=](const Texts& texts) { return texts.status == status; });
  return found == std::end(kOwnCodes) ? nullptr : found;
}

std::string textOrNothing(const char* text) { return text == nullptr ? "" : text; }

class PosixStatusTable : public StatusTable {
 public:
  std::string name(OSStatus status) const override {
    if (const Texts* own = findOwnCode(status)) return own->name;
    return textOrNothing(::strerrorname_np(status));
  }

  std::string description(OSStatus status) const override {
    if (const Texts* own = findOwnCode(status)) return own->description;
    return textOrNothing(::strerrordesc_np(status));
  }
};

}  // namespace

std::unique_ptr<StatusTable> makePosixStatusTable() { return std::make_unique<PosixStatusTable>(); }

}  // namespace platform
