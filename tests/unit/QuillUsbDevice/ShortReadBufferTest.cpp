#include <cstring>

#include "Log.h"
#include "ShortReadBuffer.h"
#include "UsbTest.h"

namespace {

using testing::ElementsAre;

class ShortReadBufferTest : public UsbTest {
 protected:
  void fill(const std::string& packet) {
    std::memcpy(mBuffer.data(), packet.data(), packet.size());
    mBuffer.handleReadCompletion(packet.size());
    mPlatform.takeEntries();
  }

  std::string take(std::size_t len) {
    std::string taken(len, '?');
    taken.resize(mBuffer.read(taken.data(), len));
    return taken;
  }

  ShortReadBuffer mBuffer{8};
};

TEST_F(ShortReadBufferTest, StartsEmpty) {
  EXPECT_EQ(mBuffer.capacity(), 8u);
  EXPECT_EQ(mBuffer.available(), 0u);
}

TEST_F(ShortReadBufferTest, HandsAPacketOutPieceByPiece) {
  fill("abcdefg");
  EXPECT_EQ(take(3), "abc");
  EXPECT_EQ(mBuffer.available(), 4u);
  EXPECT_EQ(take(1), "d");
  EXPECT_EQ(take(100), "efg");
  EXPECT_EQ(mBuffer.available(), 0u);
}

TEST_F(ShortReadBufferTest, NewPacketStartsAtTheFront) {
  fill("abcd");
  EXPECT_EQ(take(2), "ab");
  fill("xyz");
  EXPECT_EQ(take(8), "xyz");
}

TEST_F(ShortReadBufferTest, LogsWhatCameAndWhatWasTaken) {
  std::memcpy(mBuffer.data(), "abcdefgh", 8);
  mBuffer.handleReadCompletion(8);
  take(3);
  take(16);
  EXPECT_THAT(
      mPlatform.entries(),
      ElementsAre(
          LogEntry{7, "SRB::handleReadCompletion 8 bytes added"},
          LogEntry{7, "SRB::read requested 3; copying 3; 5 bytes left in short read buffer"},
          LogEntry{7, "SRB::read requested 16; copying 5; 0 bytes left in short read buffer"}));
}

TEST_F(ShortReadBufferTest, LogsInDecimalWhateverTheLogWasLeftIn) {
  ShortReadBuffer buffer(64);
  std::string taken(32, '?');
  Log<7>() << std::hex;
  buffer.handleReadCompletion(64);
  Log<7>() << std::hex;
  buffer.read(taken.data(), 32);
  EXPECT_THAT(
      mPlatform.entries(),
      ElementsAre(
          LogEntry{7, "SRB::handleReadCompletion 64 bytes added"},
          LogEntry{7, "SRB::read requested 32; copying 32; 32 bytes left in short read buffer"}));
}

using ShortReadBufferDeathTest = ShortReadBufferTest;

TEST_F(ShortReadBufferDeathTest, HandingOutNothingIsFatal) {
  EXPECT_DEATH(take(3),
               "^Assertion failed: \\(lenToReturn > 0\\), function read, file "
               "Host/installkit/osx/QuillUsbDevice/UsbInterface, line [0-9]+\\.\n$");
}

TEST_F(ShortReadBufferDeathTest, ReadOfNothingIsFatal) {
  fill("abc");
  EXPECT_DEATH(take(0), "^Assertion failed: \\(lenToReturn > 0\\), function read, ");
}

TEST_F(ShortReadBufferDeathTest, PacketLongerThanTheBufferIsFatal) {
  EXPECT_DEATH(mBuffer.handleReadCompletion(9),
               "^Assertion failed: \\(numBytes <= capacity\\), function handleReadCompletion, file "
               "Host/installkit/osx/QuillUsbDevice/UsbInterface, line [0-9]+\\.\n$");
}

}  // namespace
