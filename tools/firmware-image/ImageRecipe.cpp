#include "ImageRecipe.h"

#include <algorithm>
#include <iterator>

#include "Arguments.h"

namespace {

constexpr std::size_t kLargestBlock = 255;
constexpr char kFormatVersion = 3;
constexpr char kOtherFormatVersion = 2;

struct Name {
  const char* name;
  Malformation malformation;
};

constexpr Name kNames[] = {
    {"version-byte", Malformation::VersionByte}, {"field-count", Malformation::FieldCount},
    {"length-byte", Malformation::LengthByte},   {"short-version", Malformation::ShortVersion},
    {"no-trailer", Malformation::NoTrailer},
};

std::string withoutLeadingZeros(const std::string& version) {
  const std::size_t significant = version.find_first_not_of('0');
  return significant == std::string::npos ? "0" : version.substr(significant);
}

}  // namespace

std::string ImageRecipe::trailer() const {
  if (malformation == Malformation::NoTrailer) return std::string();
  const bool isShort = malformation == Malformation::ShortVersion;
  std::string block = firstField + '\0';
  block += (isShort ? withoutLeadingZeros(version) : version) + '\0';
  if (malformation != Malformation::FieldCount) block += lastField + '\0';
  if (block.size() > kLargestBlock) {
    throw UsageError("the fields take " + std::to_string(block.size()) +
                     " bytes with their ends; " + "a platform ID block holds " +
                     std::to_string(kLargestBlock));
  }
  const std::size_t length = malformation == Malformation::LengthByte ? 0 : block.size();
  block += malformation == Malformation::VersionByte ? kOtherFormatVersion : kFormatVersion;
  return block + static_cast<char>(length);
}

std::optional<Malformation> malformationNamed(const std::string& name) {
  const auto found = std::find_if(std::begin(kNames), std::end(kNames),
                                  [&](const Name& known) { return name == known.name; });
  if (found == std::end(kNames)) return std::nullopt;
  return found->malformation;
}
