#include "ShortReadBuffer.h"

#include <algorithm>
#include <cstring>
#include <ios>

#include "Log.h"
#include "platform/Assertion.h"

namespace {

// The place that support staff know these assertions by is that of the interface.
constexpr const char* kSourceFile = "Host/installkit/osx/QuillUsbDevice/UsbInterface";

}  // namespace

ShortReadBuffer::ShortReadBuffer(std::size_t size) : mData(size), mReadPos(mData.data()) {}

void ShortReadBuffer::handleReadCompletion(std::size_t numBytes) {
  Log<7>() << "SRB::handleReadCompletion " << std::dec << numBytes << " bytes added" << std::flush;
  platform::assertAt(numBytes <= capacity(), "numBytes <= capacity", "handleReadCompletion",
                     kSourceFile, __LINE__);
  mAvailable = numBytes;
  mReadPos = mData.data();
}

std::size_t ShortReadBuffer::read(char* dst, std::size_t len) {
  const std::size_t lenToReturn = std::min(len, mAvailable);
  Log<7>() << "SRB::read requested " << std::dec << len << "; copying " << lenToReturn;
  platform::assertAt(lenToReturn > 0, "lenToReturn > 0", "read", kSourceFile, __LINE__);
  std::memcpy(dst, mReadPos, lenToReturn);
  mReadPos += lenToReturn;
  mAvailable -= lenToReturn;
  Log<7>() << "; " << mAvailable << " bytes left in short read buffer" << std::flush;
  return lenToReturn;
}
