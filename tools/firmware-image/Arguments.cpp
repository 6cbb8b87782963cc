#include "Arguments.h"

#include <charconv>

Arguments::Arguments(const std::vector<std::string>& arguments) {
  bool optionsEnded = false;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (*argument == "--" && !optionsEnded) {
      optionsEnded = true;
    } else if (optionsEnded || !argument->starts_with("--")) {
      mOperands.push_back(*argument);
    } else {
      const std::size_t equals = argument->find('=');
      const std::string option = argument->substr(0, equals);
      const bool isNextValue = equals == std::string::npos;
      if (isNextValue && argument + 1 == arguments.end()) {
        throw UsageError("option " + option + " needs a value");
      }
      const std::string value = isNextValue ? *++argument : argument->substr(equals + 1);
      if (!mOptions.emplace(option, value).second) {
        throw UsageError("option " + option + " is given twice");
      }
    }
  }
}

std::optional<std::string> Arguments::value(const std::string& option) {
  mKnown.insert(option);
  const auto found = mOptions.find(option);
  if (found == mOptions.end()) return std::nullopt;
  return found->second;
}

std::optional<std::uint64_t> Arguments::number(const std::string& option, std::uint64_t largest) {
  const std::optional<std::string> text = value(option);
  if (!text) return std::nullopt;
  std::uint64_t number = 0;
  const char* const end = text->data() + text->size();
  const auto read = std::from_chars(text->data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || number > largest) {
    throw UsageError("option " + option + " takes a number from 0 to " + std::to_string(largest) +
                     ", not \"" + *text + "\"");
  }
  return number;
}

std::string Arguments::onlyOperand(const std::string& what) const {
  for (const auto& [option, value] : mOptions) {
    if (!mKnown.contains(option)) throw UsageError("unknown option " + option);
  }
  if (mOperands.empty()) throw UsageError(what + " is missing");
  if (mOperands.size() > 1) throw UsageError("one argument too many: \"" + mOperands[1] + "\"");
  return mOperands.front();
}
