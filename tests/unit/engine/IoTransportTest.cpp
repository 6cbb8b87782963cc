#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "IoTransport.h"

namespace {

using testing::ThrowsMessage;

TEST(IoTransport, RefusesToTransferNothing) {
  char byte = 0;
  EXPECT_THAT([&] { IoTransport::validate(&byte, 0); },
              ThrowsMessage<std::runtime_error>("Cannot read or write no data."));
}

TEST(IoTransport, LooksAtTheLengthFirst) {
  EXPECT_THAT([] { IoTransport::validate(nullptr, 0); },
              ThrowsMessage<std::runtime_error>("Cannot read or write no data."));
}

TEST(IoTransport, RefusesANullBuffer) {
  EXPECT_THAT([] { IoTransport::validate(nullptr, 5); },
              ThrowsMessage<std::runtime_error>("Null buffer is invalid."));
}

TEST(IoTransport, AcceptsABufferWithALength) {
  char bytes[5] = {};
  EXPECT_NO_THROW(IoTransport::validate(bytes, sizeof bytes));
}

}  // namespace
