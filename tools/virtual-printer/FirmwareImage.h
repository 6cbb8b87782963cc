// The image that a burn command brings, and the checks that the printer makes before it burns: the
// checksum of the burn command, and the platform ID block at the end of the image. Written straight
// from docs/wire-protocol.md and docs/firmware-file.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace virtualprinter {

// Bytes that are not initialised before they arrive: an image is large, and touching it once is
// enough. Their memory comes in large pages where the kernel has them.
class ImageBuffer {
 public:
  ImageBuffer() = default;
  explicit ImageBuffer(std::size_t size);

  std::span<std::uint8_t> bytes() { return {mBytes.get(), mSize}; }
  std::span<const std::uint8_t> bytes() const { return {mBytes.get(), mSize}; }

 private:
  std::unique_ptr<std::uint8_t[]> mBytes;
  std::size_t mSize = 0;
};

std::uint16_t imageChecksum(std::span<const std::uint8_t> image);

// 64 lower-case digits.
std::string sha256(std::span<const std::uint8_t> bytes);

// The platform ID block. `problem` is empty when the block is well formed; the other members are
// then set: the three fields, and the version, which is the run of decimal digits that begins the
// second field, eight at most.
struct PlatformId {
  std::string problem;
  std::vector<std::string> fields;
  std::string version;
};

PlatformId readPlatformId(std::span<const std::uint8_t> image);

}  // namespace virtualprinter
