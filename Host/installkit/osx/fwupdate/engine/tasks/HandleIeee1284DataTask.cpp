#include "HandleIeee1284DataTask.h"

#include <cstddef>

#include "Log.h"
#include "platform/Assertion.h"
#include "wcharStub.h"

namespace {

constexpr std::size_t IEEE_1284_HEADER_SIZE = 2;

}  // namespace

AsyncTaskResult HandleIeee1284DataTask::operator()() {
  Log<5>() << "Validating IEEE 1284 device ID..." << std::flush;
  const std::size_t len = mData.size();
  platform::assertAt(len > IEEE_1284_HEADER_SIZE, "len > IEEE_1284_HEADER_SIZE", "operator()",
                     "Host/installkit/osx/fwupdate/AsyncTaskQueue", 463);
  const char* const text = mData.data() + IEEE_1284_HEADER_SIZE;
  const std::size_t textLen = len - IEEE_1284_HEADER_SIZE;
  Log<5>() << "IEEE 1284 device ID is " << std::string(text, textLen) << std::flush;
  mDeviceId = constructFromCStr(text, textLen);
  return kTaskDoneContinue;
}
