#include "FirmwareImage.h"

#include <openssl/evp.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace virtualprinter {
namespace {

constexpr std::uint8_t kPlatformIdVersion = 3;
constexpr std::size_t kPlatformIdFields = 3;
constexpr std::size_t kVersionDigits = 8;

std::vector<std::string> splitFields(std::span<const std::uint8_t> block) {
  std::vector<std::string> fields;
  std::string field;
  for (const std::uint8_t byte : block) {
    if (byte == 0) {
      fields.push_back(field);
      field.clear();
    } else {
      field.push_back(static_cast<char>(byte));
    }
  }
  return fields;
}

std::string leadingDigits(std::string_view text) {
  const std::string_view head = text.substr(0, kVersionDigits);
  const auto end =
      std::find_if(head.begin(), head.end(), [](char c) { return c < '0' || c > '9'; });
  return std::string(head.begin(), end);
}

}  // namespace

ImageBuffer::ImageBuffer(std::size_t size)
    : mBytes(std::make_unique_for_overwrite<std::uint8_t[]>(size)), mSize(size) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  void* begin = mBytes.get();
  std::size_t rest = size;
  if (std::align(page, page, begin, rest) == nullptr) return;
  static_cast<void>(::madvise(begin, rest / page * page, MADV_HUGEPAGE));
}

std::uint16_t imageChecksum(std::span<const std::uint8_t> image) {
  std::uint32_t sum = 0;
  const std::size_t pairs = image.size() / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    sum += static_cast<std::uint32_t>(image[2 * i]) << 8 | image[2 * i + 1];
  }
  // An odd last byte counts as it is, not as the high half of a word.
  if (image.size() % 2 != 0) sum += image.back();

  // The printer folds with its sign: a sum from 2^31 on is negative, and carries less than nothing.
  auto folded = static_cast<std::int32_t>(sum);
  while (folded >> 16 != 0) folded = (folded & 0xffff) + (folded >> 16);
  return static_cast<std::uint16_t>(~folded);
}

std::string sha256(std::span<const std::uint8_t> bytes) {
  std::uint8_t digest[EVP_MAX_MD_SIZE];
  unsigned size = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_sha256(), nullptr) != 1) {
    throw std::runtime_error("SHA-256 is not available");
  }
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (unsigned i = 0; i < size; ++i) {
    text.push_back(kDigits[digest[i] >> 4]);
    text.push_back(kDigits[digest[i] & 0xf]);
  }
  return text;
}

PlatformId readPlatformId(std::span<const std::uint8_t> image) {
  PlatformId id;
  if (image.size() < 2) {
    id.problem = "the image is too short for a platform ID block";
    return id;
  }
  const std::uint8_t version = image[image.size() - 2];
  const std::size_t length = image[image.size() - 1];
  if (version != kPlatformIdVersion) {
    id.problem = "the platform ID version is " + std::to_string(version) + ", expected 3";
    return id;
  }
  if (length > image.size() - 2) {
    id.problem = "the platform ID block has " + std::to_string(length) + " bytes, but only " +
                 std::to_string(image.size() - 2) + " precede its version";
    return id;
  }
  const auto block = image.subspan(image.size() - 2 - length, length);
  id.fields = splitFields(block);
  if (id.fields.size() != kPlatformIdFields) {
    id.problem =
        "the platform ID block has " + std::to_string(id.fields.size()) + " fields, expected 3";
    return id;
  }
  id.version = leadingDigits(id.fields[1]);
  if (id.version.empty()) id.problem = "the second platform ID field does not begin with a version";
  return id;
}

}  // namespace virtualprinter
