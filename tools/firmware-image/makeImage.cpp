#include "makeImage.h"

#include <cstdint>
#include <string>
#include <vector>

#include "DemoData.h"
#include "ImageFile.h"
#include "ImageRecipe.h"

namespace {

constexpr std::uint64_t kDefaultSize = 1048576;
constexpr std::uint64_t kLargestSize = UINT32_MAX;  // what a burn command can carry
constexpr std::uint64_t kLargestVersion = 99999999;
constexpr std::size_t kVersionDigits = 8;

std::string versionField(Arguments& arguments) {
  const auto number = arguments.number("--version", kLargestVersion);
  const auto text = arguments.value("--version-text");
  if (number && text) throw UsageError("--version and --version-text exclude each other");
  if (text) return *text;
  const std::string digits = std::to_string(number.value_or(1));
  return std::string(kVersionDigits - digits.size(), '0') + digits;
}

ImageRecipe readRecipe(Arguments& arguments) {
  ImageRecipe recipe;
  recipe.firstField = arguments.value("--first-field").value_or(recipe.firstField);
  recipe.version = versionField(arguments);
  recipe.lastField = arguments.value("--last-field").value_or(recipe.lastField);
  if (const auto name = arguments.value("--malformed")) {
    const auto malformation = malformationNamed(*name);
    if (!malformation) throw UsageError("there is no malformation \"" + *name + "\"");
    recipe.malformation = *malformation;
  }
  return recipe;
}

// The data of a file that ends in `trailer`.
std::vector<char> readOrMakeData(Arguments& arguments, const std::string& trailer) {
  const auto dataFile = arguments.value("--data");
  const auto size = arguments.number("--size", kLargestSize);
  const auto seed = arguments.number("--seed", UINT64_MAX);
  if (dataFile && (size || seed)) {
    throw UsageError("--data excludes --size and --seed");
  }
  if (dataFile) return readImageFile(*dataFile);
  const std::uint64_t fileSize = size.value_or(kDefaultSize);
  if (fileSize < trailer.size()) {
    throw UsageError("a file of " + std::to_string(fileSize) + " bytes cannot hold a trailer of " +
                     std::to_string(trailer.size()));
  }
  return makeDemoData(fileSize - trailer.size(), seed.value_or(1));
}

}  // namespace

void makeImage(Arguments arguments) {
  const std::string trailer = readRecipe(arguments).trailer();
  std::vector<char> image = readOrMakeData(arguments, trailer);
  const std::string output = arguments.onlyOperand("the name of the file to make");
  image.insert(image.end(), trailer.begin(), trailer.end());
  writeImageFile(output, image);
}
